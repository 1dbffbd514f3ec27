#include "Keywords.h"

#include "Vocabulary.h"

#include <array>
#include <cstdint>
#include <vector>

namespace Keywords {

namespace {

struct GroupWords {
    Group group;
    /// Lower-case ASCII words (or parts of words) one of which every English label of the group holds.
    std::initializer_list<const char *> english;
    /// The vocabulary lists whose phrases the group's patterns gain under the full rules.
    std::initializer_list<const char *> lists;
};

// The words each pattern of a group needs; a word missing here would hide a label from its pattern,
// so each list covers every alternative of the patterns named in the group's comment (Keywords.h).
const GroupWords groups[] = {
    {TotalLabel, {"total", "due", "pay", "round"}, {"total.gross", "total.due", "total.plain"}},
    {TaxLabel, {"tax", "vat", "gst", "hst", "pst", "qst", "iva", "mwst", "btw"}, {"tax.word"}},
    {SubtotalLabel, {"total", "net", "before", "excl"}, {"subtotal"}},
    {SummaryRow,
     {"total",    "balance", "amount", "tax",   "vat",    "gst",  "hst",  "discount",
      "shipping", "freight", "pay",    "paid",  "change", "cash", "visa", "mastercard",
      "amex",     "card",    "tip",    "thank", "due",    "net"},
     {"summary", "subtotal"}},
    {HeaderDescription,
     {"descr", "item", "product", "service", "detail", "particular", "article"},
     {"header.desc"}},
    {HeaderQuantity, {"qty", "quantit", "hour", "hrs", "unit", "pcs"}, {"header.qty"}},
    {HeaderPrice, {"price", "rate", "cost"}, {"header.price"}},
    {HeaderAmount, {"amount", "total", "ext"}, {"header.amount"}},
    {VendorSkip,
     {"#",     "tax",   "invoice",   "receipt",  "statement", "credit",   "quot",    "estimate", "bill",
      "ship",  "sold",  "customer",  "order",    "page",      "date",     "due",     "total",    "amount",
      "descr", "qty",   "quantit",   "tel",      "phone",     "fax",      "mail",    "web",      "www",
      "http",  "thank", "duplicate", "original", "copy",      "purchase", "packing", "balance",  "account",
      "ref",   "no",    "welcome",   "cashier",  "server",    "table"},
     {"vendor.skip"}},
    {VendorLabel,
     {"vendor", "supplier", "merchant", "payee", "sold", "bill", "remit", "from"},
     {"vendor.label"}},
    {SellerHeading, {"seller", "supplier", "vendor"}, {"vendor.heading"}},
    {NumberLabel,
     {"receipt", "inv", "bill", "order", "ref", "doc", "confirmation", "transaction", "ticket", "form"},
     {"number.invoice", "number.order", "number.other"}},
    {DateLabel, {"due", "pay", "date", "issued"}, {"date.due", "date.issue"}},
    {LegalForm, {"bhd", "ltd", "sp. z o.o"}, {}},
    {Divider, {"invoice", "bill", "sold", "ship", "deliver", "customer"}, {}},
    {Registration,
     {"reg", "company", "br no", "roc no", "gst", "sst", "vat", "tax", "ust id", "siret", "siren", "kvk",
      "uen", "abn"},
     {}},
};

// The automaton reads classes, not characters: a–z, 0–9, "#", the other letters the words hold (after
// simple case folding), and one class for everything else, which no word holds. Blanks, dots, hyphens
// and apostrophes are skipped: a phrase's pattern lets them be left out, and skipping them in the text
// only lets more texts through.
constexpr int asciiClasses = 26 + 10 + 1;
constexpr int otherClass = asciiClasses;
constexpr int maxClasses = 64;
constexpr std::uint8_t skipped = 0xFF;
// States are few (the words' letters) and kept small, so the table stays in cache.
using State = std::uint16_t;

constexpr std::array<std::uint8_t, 128> asciiTable = [] {
    std::array<std::uint8_t, 128> table{};
    for (int c = 0; c < 128; ++c) {
        if (c >= 'a' && c <= 'z')
            table[c] = std::uint8_t(c - 'a');
        else if (c >= 'A' && c <= 'Z')
            table[c] = std::uint8_t(c - 'A');
        else if (c >= '0' && c <= '9')
            table[c] = std::uint8_t(26 + c - '0');
        else if (c == '#')
            table[c] = 36;
        else if (c == '.' || c == '-' || c == '\'' || c == ' ' || (c >= '\t' && c <= '\r'))
            table[c] = skipped;
        else
            table[c] = otherClass;
    }
    return table;
}();

// Characters whose full case folding gives several characters or ASCII letters; ICU's case-insensitive
// matching reads them as what they fold to, which the automaton does not see.
bool foldsSpecially(char16_t u)
{
    return u == 0x00DF || u == 0x0130 || u == 0x0149 || u == 0x017F || u == 0x01F0 || u == 0x1E9E ||
           u == 0x212A || (u >= 0x1E96 && u <= 0x1E9A) || (u >= 0xFB00 && u <= 0xFB06);
}

// An Aho–Corasick automaton with every transition filled in: one step per character.
class Automaton {
public:
    explicit Automaton(const RuleFeatures &features)
    {
        newState();
        for (const GroupWords &g : groups) {
            for (const char *word : g.english)
                addPhrase(QString::fromLatin1(word), g.group);
            if (!features.vocabularies)
                continue;
            for (const char *list : g.lists) {
                for (const QString &phrase : Vocabulary::active().lists.value(QLatin1StringView(list)))
                    addPhrase(phrase, g.group);
            }
        }
        link();
    }

    Mask scan(const QString &text) const
    {
        Mask found = m_always;
        State state = 0;
        for (const QChar c : text) {
            const char16_t u = c.unicode();
            if (u >= 0x80 && foldsSpecially(u))
                return ~Mask(0);
            const std::uint8_t k = classOf(c);
            if (k == skipped)
                continue;
            state = m_next[size_t(state)][k];
            found |= m_out[size_t(state)];
        }
        return found;
    }

private:
    std::uint8_t classOf(QChar c) const
    {
        const char16_t u = c.unicode();
        if (u < 0x80)
            return asciiTable[u];
        if (c.isSpace() || u == 0x2019)
            return skipped;
        const char16_t folded = c.toCaseFolded().unicode();
        for (size_t i = 0; i < m_extra.size(); ++i) {
            if (m_extra[i] == folded)
                return std::uint8_t(asciiClasses + 1 + i);
        }
        return otherClass;
    }

    // A class for a letter of a phrase outside ASCII; other class when the table is full or the letter
    // folds specially (it then splits the phrase).
    std::uint8_t classForPhrase(QChar c)
    {
        const std::uint8_t k = classOf(c);
        if (k != otherClass || c.unicode() < 0x80 || foldsSpecially(c.unicode()) || !c.isLetterOrNumber() ||
            asciiClasses + 1 + m_extra.size() >= size_t(maxClasses))
            return k;
        m_extra.push_back(c.toCaseFolded().unicode());
        return classOf(c);
    }

    State newState()
    {
        if (m_next.size() >= 0xFFFF) // the vocabularies are built in: a programming fault
            qFatal("keyword automaton outgrew its state type");
        m_next.emplace_back();
        m_next.back().fill(0);
        m_out.push_back(0);
        return State(m_next.size() - 1);
    }

    // A phrase matches only where its longest run of classed characters occurs (blanks, dots, hyphens
    // and apostrophes left out); a phrase without one cannot be tested here, so its group always may.
    void addPhrase(const QString &phrase, Mask group)
    {
        std::vector<std::uint8_t> longest, run;
        for (qsizetype i = phrase.startsWith(u'*') ? 1 : 0; i <= phrase.size(); ++i) {
            const std::uint8_t k = i < phrase.size() ? classForPhrase(phrase[i]) : otherClass;
            if (k == skipped)
                continue;
            if (k != otherClass) {
                run.push_back(k);
                continue;
            }
            if (run.size() > longest.size())
                longest = run;
            run.clear();
        }
        if (longest.empty()) {
            m_always |= group;
            return;
        }
        State state = 0;
        for (const std::uint8_t k : longest) {
            if (m_next[size_t(state)][k] == 0) {
                const State created = newState();
                m_next[size_t(state)][k] = created;
            }
            state = m_next[size_t(state)][k];
        }
        m_out[size_t(state)] |= group;
    }

    // Breadth first: each state's missing transitions follow its longest proper suffix's, and it reports
    // the words that end there too.
    void link()
    {
        std::vector<State> fail(m_next.size(), 0);
        std::vector<State> queue;
        for (int k = 0; k < maxClasses; ++k) {
            if (const State s = m_next[0][k])
                queue.push_back(s);
        }
        for (size_t head = 0; head < queue.size(); ++head) {
            const State s = queue[head];
            m_out[size_t(s)] |= m_out[size_t(fail[size_t(s)])];
            for (int k = 0; k < maxClasses; ++k) {
                const State t = m_next[size_t(s)][k];
                if (t) {
                    fail[size_t(t)] = m_next[size_t(fail[size_t(s)])][k];
                    queue.push_back(t);
                } else {
                    m_next[size_t(s)][k] = m_next[size_t(fail[size_t(s)])][k];
                }
            }
        }
    }

    std::vector<std::array<State, maxClasses>> m_next;
    std::vector<Mask> m_out;
    std::vector<char16_t> m_extra; ///< folded letters outside ASCII, class asciiClasses + 1 + index
    Mask m_always = 0;
};

} // namespace

Mask of(const QString &text, const RuleFeatures &features)
{
    // The automaton reads only whether the vocabularies' words join the English ones.
    if (features.vocabularies) {
        static const Automaton withVocabularies(features);
        return withVocabularies.scan(text);
    }
    static const Automaton english(features);
    return english.scan(text);
}

} // namespace Keywords
