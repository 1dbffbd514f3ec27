#include "Currency.h"

#include "Keywords.h"
#include "Patterns.h"
#include "Regex.h"
#include "Rows.h"
#include "Vocabulary.h"
#include "model/Money.h"

#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <array>
#include <vector>

// Resources of a static library are registered by hand, outside any namespace.
static void registerCountries()
{
    Q_INIT_RESOURCE(countries);
}

namespace Extractor {

namespace {

struct CurrencyPatterns {
    // Upper case only: "usd" in running text is more often a word fragment than a currency.
    Regex code{
        QStringLiteral(R"(\b(USD|EUR|GBP|CAD|AUD|NZD|JPY|CHF|INR|CNY|MXN|SEK|NOK|DKK|SGD|HKD|BRL|ZAR)\b)"),
        false};
    // The full rules' codes: the base ones and those of the places the local symbols below belong to.
    Regex fullCode{QStringLiteral(R"(\b(USD|EUR|GBP|CAD|AUD|NZD|JPY|CHF|INR|CNY|MXN|SEK|NOK|DKK|SGD|HKD|)"
                                  R"(BRL|ZAR|MYR|PLN|IDR|THB|ISK|CZK|HUF)\b)"),
                   false};
    // A currency mark written next to an amount, before ("RM 12.50", "S$4", "€ 3") or after it ("12,50 zł",
    // "95 kr"), or as a column's unit in brackets ("Amount (RM)"). Letters around it are not allowed, so a
    // word holding "RM" or "kr" is no mark; case matters for the same reason. Two blanks may separate it
    // from the amount, as a row joins its cells with two.
    Regex mark{QStringLiteral(
                   R"((?<![\p{L}\d$])(RM|Rs\.?|₹|S\$|A\$|AU\$|C\$|CA\$|NZ\$|HK\$|US\$|CHF|zł|kr|€|£|¥|\$))"
                   R"((?:\s{0,2}(?=[-(]?\d)|(?=\)))|(?<=\d)\s{0,2}(zł|kr|€|RM|CHF)(?![\p{L}]))"),
               false};
    // A seller's legal form that exists in one currency's country only.
    Regex legalForm{QStringLiteral(R"(\b(?:(sdn\.?\s*bhd|bhd)|(pte\.?\s*ltd)|(pvt\.?\s*ltd)|)"
                                   R"((pty\.?\s*ltd)|(sp\.\s*z\s*o\.\s*o))\b)")};
};

const CurrencyPatterns &patterns()
{
    return Patterns::compiledOnce<CurrencyPatterns>();
}

// One country's signs on a page, as one case-sensitive pattern: names and legal forms as written or in
// capitals (a receipt prints "SDN BHD", a letterhead "Sdn Bhd"; "AB" and "SA" are no forms in lower case),
// registration numbers as patterns, phone codes after a "+" (a "00" prefix is too often part of a number).
struct Country {
    QString currency;
    Regex signs;
};

QString countryPattern(const QJsonObject &country)
{
    QStringList alternatives;
    for (const char *list : {"places", "legalForms"}) {
        for (const QJsonValue phrase : country.value(QLatin1String(list)).toArray()) {
            for (const QString &written : {phrase.toString(), phrase.toString().toUpper()})
                alternatives.append(QLatin1String("(?<![\\p{L}\\p{N}])(?:") +
                                    Vocabulary::phraseText(written) + QLatin1String(")(?![\\p{L}\\p{N}])"));
        }
    }
    for (const QJsonValue id : country.value(QLatin1String("taxIds")).toArray())
        alternatives.append(QLatin1String("\\b(?:") + id.toString() + u')');
    for (const QJsonValue code : country.value(QLatin1String("phoneCodes")).toArray())
        alternatives.append(QLatin1String("(?<![\\d.,+])\\(?\\+\\s?") + code.toString() +
                            QLatin1String("(?=[\\s\\-().]*\\d)"));
    return alternatives.join(u'|');
}

struct CountryPatterns {
    std::vector<Country> countries;
    CountryPatterns()
    {
        registerCountries();
        QFile file(QStringLiteral(":/countries/countries.json"));
        if (!file.open(QIODevice::ReadOnly))
            return;
        const QJsonArray all = QJsonDocument::fromJson(file.readAll()).object().value(u"countries").toArray();
        for (const QJsonValue country : all) {
            const QString pattern = countryPattern(country.toObject());
            if (!pattern.isEmpty())
                countries.push_back(Country{country[u"currency"].toString(), Regex(pattern, false)});
        }
    }
};

struct Symbol {
    QChar symbol;
    const char *code;
    double confidence;
};

// Order of precedence: on equal counts the earlier symbol wins.
constexpr std::array<Symbol, 4> symbols{{
    {QChar(0x20AC), "EUR", 0.75},
    {QChar(0x00A3), "GBP", 0.75},
    {QChar(0x00A5), "JPY", 0.75},
    {QChar(u'$'), "USD", 0.6},
}};

// The box of the first literal occurrence of `token` in the rows.
std::optional<PageBox> firstBox(const QString &token, const QList<Row> &rows)
{
    for (const Row &row : rows) {
        const qsizetype at = row.text.indexOf(token);
        if (at >= 0)
            return row.box(TextRange{at, token.size()});
    }
    return std::nullopt;
}

// How strongly a mark names the currency; a stronger kind wins whatever the counts. A lone $ or kr
// names a dozen currencies, a legal form found in one country only names one.
enum class Strength { Country = 0, LoneMark = 1, LegalForm = 2, Local = 3, Code = 4 };

// The locale's currency when its symbol is a dollar (AUD in en_AU), else USD.
QString dollarOf(const QLocale &locale)
{
    const QString own = locale.currencySymbol(QLocale::CurrencyIsoCode);
    return locale.currencySymbol(QLocale::CurrencySymbol).contains(u'$') && !own.isEmpty()
               ? own
               : QStringLiteral("USD");
}

// "kr" is the crown of the Nordic locales; elsewhere the Swedish one, as the most used.
QString crownOf(const QLocale &locale)
{
    QString own = locale.currencySymbol(QLocale::CurrencyIsoCode);
    for (const char *code : {"SEK", "NOK", "DKK", "ISK"}) {
        if (own == QLatin1String(code))
            return own;
    }
    return QStringLiteral("SEK");
}

QString codeOfMark(const QString &mark, const QLocale &locale)
{
    static const QHash<QString, QString> codes{
        {QStringLiteral("RM"), QStringLiteral("MYR")},  {QStringLiteral("Rs"), QStringLiteral("INR")},
        {QStringLiteral("Rs."), QStringLiteral("INR")}, {QStringLiteral("₹"), QStringLiteral("INR")},
        {QStringLiteral("S$"), QStringLiteral("SGD")},  {QStringLiteral("A$"), QStringLiteral("AUD")},
        {QStringLiteral("AU$"), QStringLiteral("AUD")}, {QStringLiteral("C$"), QStringLiteral("CAD")},
        {QStringLiteral("CA$"), QStringLiteral("CAD")}, {QStringLiteral("NZ$"), QStringLiteral("NZD")},
        {QStringLiteral("HK$"), QStringLiteral("HKD")}, {QStringLiteral("US$"), QStringLiteral("USD")},
        {QStringLiteral("CHF"), QStringLiteral("CHF")}, {QStringLiteral("zł"), QStringLiteral("PLN")},
        {QStringLiteral("€"), QStringLiteral("EUR")},   {QStringLiteral("£"), QStringLiteral("GBP")},
        {QStringLiteral("¥"), QStringLiteral("JPY")},
    };
    if (mark == QLatin1String("$"))
        return dollarOf(locale);
    if (mark == QLatin1String("kr"))
        return crownOf(locale);
    return codes.value(mark);
}

struct Evidence {
    QString code;
    Strength strength;
    PageBox box;
};

// Three upper-case ASCII letters in a row, as every code needs (the code patterns are case-sensitive).
bool mayHoldCode(const QString &text)
{
    int run = 0;
    for (const QChar c : text) {
        run = c.unicode() >= u'A' && c.unicode() <= u'Z' ? run + 1 : 0;
        if (run == 3)
            return true;
    }
    return false;
}

// One of the marks the case-sensitive mark pattern names.
bool mayHoldMark(const QString &text)
{
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if (u == u'$' || u == u'€' || u == u'£' || u == u'¥' || u == u'₹')
            return true;
    }
    for (const char16_t *mark : {u"RM", u"Rs", u"CHF", u"zł", u"kr"}) {
        if (text.contains(QStringView(mark)))
            return true;
    }
    return false;
}

// Evidence by strength: printed codes, then local symbols beside amounts, then the seller's legal form, then
// a lone dollar or crown, then (RuleFeatures::countryCurrency) the country the page names: its places,
// companies, tax numbers, phone codes. Counts decide within one strength, the first seen on a tie.
QList<Evidence> evidenceIn(const QList<Row> &rows, const QLocale &locale, const RuleFeatures &features,
                           bool countries)
{
    const CurrencyPatterns &p = patterns();
    QList<Evidence> found;
    for (const Row &row : rows) {
        const QList<Regex::Match> codes =
            mayHoldCode(row.text) ? p.fullCode.matchAll(row.text) : QList<Regex::Match>();
        for (const Regex::Match &m : codes)
            found.append(Evidence{m.captured(row.text, 1), Strength::Code, row.box(m.range(1))});
        const QList<Regex::Match> marks =
            mayHoldMark(row.text) ? p.mark.matchAll(row.text) : QList<Regex::Match>();
        for (const Regex::Match &m : marks) {
            const int group = m.has(1) ? 1 : 2;
            const QString mark = m.captured(row.text, group);
            const bool lone = mark == QLatin1String("$") || mark == QLatin1String("kr");
            found.append(Evidence{codeOfMark(mark, locale), lone ? Strength::LoneMark : Strength::Local,
                                  row.box(m.range(group))});
        }
        if (countries) {
            for (const Country &country : Patterns::compiledOnce<CountryPatterns>().countries) {
                for (const Regex::Match &m : country.signs.matchAll(row.text))
                    found.append(Evidence{country.currency, Strength::Country, row.box(m.range())});
            }
        }
        const QList<Regex::Match> forms = Keywords::may(row.text, Keywords::LegalForm, features)
                                              ? p.legalForm.matchAll(row.text)
                                              : QList<Regex::Match>();
        for (const Regex::Match &m : forms) {
            static const std::array<const char *, 5> codes{"MYR", "SGD", "INR", "AUD", "PLN"};
            for (int g = 1; g <= 5; ++g) {
                if (m.has(g))
                    found.append(Evidence{QString::fromLatin1(codes[g - 1]), Strength::LegalForm,
                                          row.box(m.range(g))});
            }
        }
    }
    return found;
}

// How often each code was seen at each strength.
QHash<QString, int> countsOf(const QList<Evidence> &found)
{
    QHash<QString, int> counts;
    for (const Evidence &e : found)
        ++counts[e.code + QString::number(int(e.strength))];
    return counts;
}

int countOf(const QHash<QString, int> &counts, const Evidence &e)
{
    return counts.value(e.code + QString::number(int(e.strength)));
}

// The strongest evidence, the most often seen within one strength, the first seen on a tie.
const Evidence *strongest(const QList<Evidence> &found, const QHash<QString, int> &counts)
{
    const Evidence *best = nullptr;
    for (const Evidence &e : found) {
        if (!best || e.strength > best->strength ||
            (e.strength == best->strength && countOf(counts, e) > countOf(counts, *best)))
            best = &e;
    }
    return best;
}

// Whether the country the page names can still decide: nothing stronger was found, or only a mark seen
// once, which three signs of one country overrule (below).
bool countryMayDecide(const Evidence *best, const QHash<QString, int> &counts)
{
    return !best || (best->strength <= Strength::Local && countOf(counts, *best) == 1);
}

std::optional<Field> strongestEvidence(const QList<Row> &rows, const QLocale &locale,
                                       const RuleFeatures &features)
{
    // The country signs are some twenty patterns a row, the page's dearest scan: run only when they count.
    QList<Evidence> found = evidenceIn(rows, locale, features, false);
    QHash<QString, int> counts = countsOf(found);
    const Evidence *best = strongest(found, counts);
    if (features.countryCurrency && countryMayDecide(best, counts)) {
        found = evidenceIn(rows, locale, features, true);
        counts = countsOf(found);
        best = strongest(found, counts);
    }
    if (!best)
        return std::nullopt;
    // A mark seen once (often a misread letter on a scan) yields to three or more signs of one country
    // that names another currency, and the result is left for review.
    const Evidence *country = nullptr;
    if (features.countryCurrency && countryMayDecide(best, counts)) {
        QHash<QString, int> countrySigns;
        for (const Evidence &e : found) {
            if ((e.strength == Strength::Country || e.strength == Strength::LegalForm) &&
                e.code != best->code && ++countrySigns[e.code] >= 3 && !country)
                country = &e;
        }
    }
    Field field = emptyField(QStringLiteral("currency"), QStringLiteral("Currency"));
    if (country) {
        field.value = country->code;
        field.confidence = 0.55;
        field.box = country->box;
        return field;
    }
    field.value = best->code;
    switch (best->strength) {
    case Strength::Code:
        field.confidence = 0.9;
        break;
    case Strength::Local:
        field.confidence = 0.8;
        break;
    case Strength::LegalForm:
        field.confidence = 0.6;
        break;
    case Strength::Country:
        field.confidence = 0.55;
        break;
    case Strength::LoneMark:
        field.confidence = 0.5;
        break;
    }
    field.box = best->box;
    return field;
}

} // namespace

Field findCurrency(const QList<Row> &rows, const RuleFeatures &features, const QLocale &locale)
{
    const QString doc = documentText(rows);
    if (features.currencyEvidence) {
        if (auto field = strongestEvidence(rows, locale, features))
            return *field;
        // Amounts without a mark: the user's own currency, as a guess to confirm.
        Field field = emptyField(QStringLiteral("currency"), QStringLiteral("Currency"));
        if (Patterns::shared().amount(features).contains(doc)) {
            field.value = locale.currencySymbol(QLocale::CurrencyIsoCode);
            field.confidence = field.value.isEmpty() ? 0 : 0.3;
        }
        return field;
    }

    Field field = emptyField(QStringLiteral("currency"), QStringLiteral("Currency"));

    // Codes, most frequent first; equal counts go to the code seen first in the document.
    QList<QString> order;
    QHash<QString, int> counts;
    for (const Regex::Match &m : patterns().code.matchAll(doc)) {
        const QString code = m.captured(doc, 1);
        if (!counts.contains(code))
            order.append(code);
        ++counts[code];
    }
    if (!order.isEmpty()) {
        QString best = order.first();
        for (const QString &code : order) {
            if (counts.value(code) > counts.value(best))
                best = code;
        }
        field.value = best;
        field.confidence = 0.9;
        field.box = firstBox(best, rows);
        return field;
    }

    const Symbol *chosen = nullptr;
    qsizetype chosenCount = 0;
    for (const Symbol &s : symbols) {
        const qsizetype count = doc.count(s.symbol);
        if (count > 0 && (!chosen || count > chosenCount)) {
            chosen = &s;
            chosenCount = count;
        }
    }
    if (chosen) {
        field.value = QString::fromLatin1(chosen->code);
        field.confidence = chosen->confidence;
        field.box = firstBox(QString(chosen->symbol), rows);
    }
    return field;
}

} // namespace Extractor
