#include "OrgTagger.h"

#include <QSet>
#include <QStringList>
#include <QStringView>

// Word lookups rather than one large case-insensitive pattern: the vendor finder asks up to twelve
// times per document, and a pattern of a hundred alternatives costs tens of microseconds per line.
namespace Extractor {

namespace {

struct Word {
    qsizetype start = 0;
    qsizetype end = 0;
    QString lower;
};

bool isWordChar(QChar c)
{
    return c.isLetterOrNumber() || c.isMark();
}

// Runs of letters, digits and combining marks, lower-cased.
QList<Word> wordsOf(const QString &text)
{
    QList<Word> words;
    qsizetype i = 0;
    while (i < text.size()) {
        if (!isWordChar(text[i])) {
            ++i;
            continue;
        }
        const qsizetype start = i;
        while (i < text.size() && isWordChar(text[i]))
            ++i;
        words.append(Word{start, i, text.mid(start, i - start).toLower()});
    }
    return words;
}

QSet<QString> setOf(std::initializer_list<const char *> words)
{
    QSet<QString> set;
    for (const char *w : words)
        set.insert(QString::fromUtf8(w));
    return set;
}

struct OrgWords {
    // Legal forms that are no ordinary word: they count anywhere.
    QSet<QString> companyForms =
        setOf({"bhd", "pte", "pvt", "pty", "ltd", "ltda", "limited", "llc", "llp", "inc", "incorporated",
               "corp", "corporation", "plc", "gmbh", "mbh", "sarl", "srl"});
    // Legal forms that are also words or codes ("AB" is a province, "SA" a country code): they count
    // only where a name ends.
    QSet<QString> shortForms =
        setOf({"ag", "kg", "ab", "oy", "oyj", "sa", "sas", "spa", "sl", "bv", "nv", "kk", "aps"});
    QSet<QString> tradeWords = setOf({
        "trading",      "traders",      "trader",       "enterprise",   "enterprises",   "hardware",
        "restaurant",   "restaurants",  "bakery",       "bakeries",     "pharmacy",      "pharmacies",
        "mart",         "supermarket",  "supermarkets", "minimarket",   "minimarkets",   "hypermarket",
        "hypermarkets", "market",       "markets",      "store",        "stores",        "cafe",
        "café",         "cafes",        "cafés",        "coffeehouse",  "hotel",         "hotels",
        "motel",        "inn",          "resort",       "bistro",       "brasserie",     "pizzeria",
        "grill",        "diner",        "deli",         "kitchen",      "catering",      "canteen",
        "bookstore",    "bookshop",     "workshop",     "stationery",   "printing",      "florist",
        "boutique",     "salon",        "clinic",       "dental",       "electronic",    "electronics",
        "electrical",   "motors",       "automotive",   "garage",       "petroleum",     "logistics",
        "transport",    "construction", "engineering",  "industries",   "manufacturing", "services",
        "solutions",    "consulting",   "consultants",  "technologies", "systems",       "software",
        "holdings",     "group",        "ventures",     "partners",     "associates",    "agency",
        "supplies",     "supply",       "wholesale",    "retail",       "emporium",      "depot",
        "outlet",       "company",      "bros",         "brothers",     "sons",          "restoran",
        "kedai",        "perniagaan",   "syarikat",     "bäckerei",     "apotheke",      "gaststätte",
        "boulangerie",  "pharmacie",    "librairie",    "épicerie",     "farmacia",      "panadería",
        "panaderia",    "ristorante",   "trattoria",    "tienda",       "apotheek",      "bakkerij",
    });
    // Words that introduce a registration or tax number, and the words that make them a label.
    QSet<QString> registrationWords =
        setOf({"company", "co",  "business", "registration", "reg", "regn", "roc", "gst",  "vat", "sst",
               "tax",     "abn", "acn",      "ein",          "tin", "cin",  "uen", "brn",  "trn", "siret",
               "siren",   "kvk", "ust",      "uid",          "nif", "cif",  "nip", "gstin"});
    // Registration acronyms that are labels with a colon alone ("TIN: 123"), unlike "Company:".
    QSet<QString> colonLabels =
        setOf({"gstin", "gst", "vat", "sst", "tin", "cin", "abn", "acn", "uen", "brn", "trn", "ein"});
    QSet<QString> numberWords = setOf({"no", "num", "number", "nr", "id"});
    // The forms dottedFormAt looks for, lower case.
    QStringList dottedForms{QStringLiteral("s.a.r.l"), QStringLiteral("s.a.s"), QStringLiteral("s.a"),
                            QStringLiteral("s.p.a"),   QStringLiteral("s.r.l"), QStringLiteral("s.l"),
                            QStringLiteral("b.v"),     QStringLiteral("n.v"),   QStringLiteral("k.k"),
                            QStringLiteral("l.l.c"),   QStringLiteral("a/s"),   QStringLiteral("co.")};
};

// Built once per process, on first use.
const OrgWords &orgWords()
{
    static const OrgWords words;
    return words;
}

qsizetype skipSpaces(const QString &text, qsizetype i)
{
    while (i < text.size() && text[i].isSpace())
        ++i;
    return i;
}

// A short form ends the name: the line ends (punctuation aside), or a comma, bar, bullet, bracket or
// spaced dash follows ("Example AG - Street 1 - City").
bool endsName(const QString &text, qsizetype end)
{
    if (end < text.size() && text[end] == u'.')
        ++end;
    qsizetype i = end;
    while (i < text.size() && !text[i].isLetterOrNumber())
        ++i;
    if (i == text.size())
        return true;
    const qsizetype next = skipSpaces(text, end);
    if (next < text.size() && QStringView(u",|(\u00B7\u2022").contains(text[next]))
        return true;
    return next > end && next + 1 < text.size() && (text[next] == u'-' || text[next] == u'\u2013') &&
           text[next + 1].isSpace();
}

// A short form follows another word: whitespace before it, and a word character or closing
// punctuation before that.
bool followsWord(const QString &text, qsizetype start)
{
    qsizetype i = start;
    while (i > 0 && text[i - 1].isSpace())
        --i;
    if (i == start || i == 0)
        return false;
    const QChar before = text[i - 1];
    return isWordChar(before) || QStringView(u".,)&").contains(before);
}

// "Store #12", "Outlet no. 5", "Store: 3": a trade word followed by a number names a branch.
bool numberFollows(const QList<Word> &words, qsizetype k, const QString &text)
{
    qsizetype i = skipSpaces(text, words[k].end);
    if (i < text.size() && (text[i] == u'#' || text[i] == u':')) {
        i = skipSpaces(text, i + 1);
    } else if (k + 1 < words.size() && words[k + 1].start == i &&
               (words[k + 1].lower == QLatin1String("no") || words[k + 1].lower == QLatin1String("nr") ||
                words[k + 1].lower == QLatin1String("number"))) {
        i = words[k + 1].end;
        if (i < text.size() && text[i] == u'.')
            ++i;
        i = skipSpaces(text, i);
    }
    return i < text.size() && text[i].isDigit();
}

bool matchesAt(const QString &text, qsizetype at, QStringView form)
{
    if (QStringView(text).mid(at, form.size()).compare(form, Qt::CaseInsensitive) != 0)
        return false;
    const qsizetype end = at + form.size();
    return end >= text.size() || !isWordChar(text[end]);
}

// Forms written with dots or a slash between letters: "S.A.", "B.V.", "A/S", "Co.", "Sp. z o.o.".
bool dottedFormAt(const QString &text, qsizetype at)
{
    for (const QString &form : orgWords().dottedForms) {
        if (matchesAt(text, at, form))
            return true;
    }
    if (QStringView(text).mid(at, 2).compare(u"sp", Qt::CaseInsensitive) == 0) {
        QString compact = text.mid(at, 14).toLower();
        compact.remove(u' ');
        return compact.startsWith(QLatin1String("sp.zo.o"));
    }
    return false;
}

bool isOrgToken(const QList<Word> &words, qsizetype k, const QString &text)
{
    const Word &w = words[k];
    if (orgWords().companyForms.contains(w.lower) || (w.lower.size() <= 2 && dottedFormAt(text, w.start)))
        return true;
    if (w.lower == QLatin1String("co")) {
        const qsizetype before = w.start > 0 ? w.start - 1 : -1;
        qsizetype i = before;
        while (i >= 0 && text[i].isSpace())
            --i;
        if (i >= 0 && text[i] == u'&')
            return true;
    }
    if (orgWords().shortForms.contains(w.lower))
        return followsWord(text, w.start) && endsName(text, w.end);
    return orgWords().tradeWords.contains(w.lower) && !numberFollows(words, k, text);
}

// A registration word followed by a number word or "#", with an optional "Reg" between them
// ("Company Reg No", "GST No", "VAT ID"), or followed directly by ":" or "#" ("TIN: 123");
// or "registered" before "no", "number", "office" or "in".
bool isRegistrationLabel(const QList<Word> &words, qsizetype k, const QString &text)
{
    const Word &w = words[k];
    if (w.lower == QLatin1String("registered"))
        return k + 1 < words.size() &&
               (orgWords().numberWords.contains(words[k + 1].lower) ||
                words[k + 1].lower == QLatin1String("office") || words[k + 1].lower == QLatin1String("in"));
    if (!orgWords().registrationWords.contains(w.lower))
        return false;
    qsizetype i = w.end;
    if (i < text.size() && text[i] == u'.')
        ++i;
    i = skipSpaces(text, i);
    if (i < text.size() && text[i] == u'#')
        return true;
    if (i < text.size() && text[i] == u':')
        return orgWords().colonLabels.contains(w.lower);
    qsizetype next = k + 1;
    if (next < words.size() && words[next].start == i &&
        (words[next].lower == QLatin1String("reg") || words[next].lower == QLatin1String("registration"))) {
        i = words[next].end;
        if (i < text.size() && text[i] == u'.')
            ++i;
        i = skipSpaces(text, i);
        if (i < text.size() && text[i] == u'#')
            return true;
        ++next;
    }
    return next < words.size() && words[next].start == i &&
           orgWords().numberWords.contains(words[next].lower);
}

} // namespace

bool looksLikeOrg(const QString &text)
{
    const QList<Word> words = wordsOf(text);
    for (qsizetype k = 0; k < words.size(); ++k) {
        // A registration label before any company word makes the line a registration line.
        if (isRegistrationLabel(words, k, text))
            return false;
        if (isOrgToken(words, k, text))
            return true;
    }
    return false;
}

} // namespace Extractor
