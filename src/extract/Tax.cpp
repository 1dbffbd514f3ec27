#include "Tax.h"

#include "Patterns.h"
#include "Vocabulary.h"
#include "model/Money.h"

#include <cmath>

namespace Extractor {

namespace {

struct TaxPatterns {
    // The full rules also take a leading word ("zzgl.", "Total") and a rate before the tax word
    // ("zzgl. 19 % USt", "20% VAT").
    RulePattern taxLabel{
        QStringLiteral(
            R"(^\W*(total\s+)?(sales\s+|state\s+|city\s+|county\s+|local\s+)?(tax|vat|gst|hst|pst|qst|iva|mwst|btw)\b)"),
        QStringLiteral(R"(^\W*(?:(?:total|(?!){tax.prefix})\s*)?(?:\d{1,2}(?:[.,]\d{1,2})?\s*%\s*)?)"
                       R"((sales\s+|state\s+|city\s+|county\s+|local\s+)?)"
                       R"((taxes|tax|vat|gst|hst|pst|qst|iva|mwst|btw{tax.word})\b)")};
    RulePattern taxTotal{QStringLiteral(R"(total\s*tax|tax\s*total{tax.total})")};
    // A tax word anywhere in a row ("Gesamtbetrag Steuer:"), for the full rules' search of the amount that
    // subtotal and total imply.
    RulePattern taxWord{
        QStringLiteral(R"((?<!\p{L})(taxes|tax|vat|gst|hst|mwst|ust|tva|iva|btw{tax.word})(?!\p{L}))")};
    RulePattern taxExclude{
        QStringLiteral(R"(tax\s*(id|no|number|reg|invoice|code|rate)\b|vat\s*(id|no|number|reg)|)"
                       R"(\btin\b|taxable|incl|inclusive|tax\s*#{tax.exclude})")};
};

const TaxPatterns &patterns()
{
    return Patterns::compiledOnce<TaxPatterns>();
}

struct TaxHit {
    double amount = 0;
    PageBox box;
    bool isTaxTotal = false;
};

// Every base tax label holds one of these words (member lines are parts of the row text).
bool mayHoldTaxLabel(const QString &text, RuleSet rules)
{
    return rules == RuleSet::Full ||
           Patterns::mayContain(
               text, {QLatin1StringView("tax"), QLatin1StringView("vat"), QLatin1StringView("gst"),
                      QLatin1StringView("hst"), QLatin1StringView("pst"), QLatin1StringView("qst"),
                      QLatin1StringView("iva"), QLatin1StringView("mwst"), QLatin1StringView("btw")});
}

bool isTaxRow(const Row &row, RuleSet rules)
{
    const TaxPatterns &p = patterns();
    if (p.taxLabel(rules).contains(row.text))
        return true;
    for (const TextLine &line : row.lines) {
        if (p.taxLabel(rules).contains(line.text))
            return true;
    }
    return false;
}

bool agrees(double a, double b)
{
    return std::abs(a - b) < 0.011;
}

// The last tax-total row, else a single tax row, else the sum of several (separate state and city
// taxes add up).
Field chooseTax(const QList<TaxHit> &hits)
{
    Field field = emptyField(QStringLiteral("tax"), QStringLiteral("Tax"));
    if (hits.isEmpty())
        return field;
    for (auto it = hits.crbegin(); it != hits.crend(); ++it) {
        if (it->isTaxTotal) {
            field.value = Money::twoDecimals(it->amount);
            field.confidence = 0.88;
            field.box = it->box;
            return field;
        }
    }
    if (hits.size() == 1) {
        field.value = Money::twoDecimals(hits.first().amount);
        field.confidence = 0.82;
        field.box = hits.first().box;
        return field;
    }
    double sum = 0;
    for (const TaxHit &hit : hits)
        sum += hit.amount;
    field.value = Money::twoDecimals(sum);
    field.confidence = 0.6;
    field.box = hits.last().box;
    return field;
}

// Full rules: a rate table ("Rate  Net  Tax" over "7 %  100,00  7,00" and "19 %  100,00  19,00"): the
// amounts under the tax label in the rows below that each print a rate, summed and outlined together.
// Nothing unless two or more such rows follow.
std::optional<TaxHit> rateColumn(const Scan &scan, qsizetype index, const TextLine &label)
{
    if (scan.rules != RuleSet::Full)
        return std::nullopt;
    TaxHit hit;
    int rows = 0;
    for (qsizetype j = index + 1; j < scan.rows.size() && scan.rows[j].text.contains(u'%'); ++j) {
        const auto near = amountUnder(scan, j, label);
        if (!near || scan.rows[j].page != scan.rows[index].page)
            break;
        hit.amount += near->value;
        hit.box = rows == 0 ? near->box : PageBox{hit.box.page, unitedRect(hit.box.rect, near->box.rect)};
        ++rows;
    }
    if (rows < 2)
        return std::nullopt;
    return hit;
}

// Several rates' taxes (7 % and 19 %) that add up to the tax subtotal and total imply: their sum,
// outlined over all of them where they share a page.
std::optional<Field> sumOfRates(const QList<TaxHit> &hits, double implied)
{
    double sum = 0;
    std::optional<PageBox> box;
    for (const TaxHit &hit : hits) {
        if (hit.isTaxTotal)
            continue;
        sum += hit.amount;
        if (!box)
            box = hit.box;
        else if (box->page == hit.box.page)
            box->rect = unitedRect(box->rect, hit.box.rect);
    }
    if (!box || !agrees(sum, implied))
        return std::nullopt;
    Field field = emptyField(QStringLiteral("tax"), QStringLiteral("Tax"));
    field.value = Money::twoDecimals(sum);
    field.confidence = 0.88;
    field.box = box;
    return field;
}

// The implied tax printed in a row that names a tax anywhere ("Gesamtbetrag Steuer:  100,83 €"), the
// last such row: the arithmetic and the word together are the evidence.
std::optional<Field> wordedAmount(const Scan &scan, double implied)
{
    const TaxPatterns &p = patterns();
    for (qsizetype i = scan.rows.size() - 1; i >= 0; --i) {
        const Row &row = scan.rows[i];
        if (scan.amounts[i].isEmpty() || !p.taxWord(scan.rules).contains(row.text) ||
            p.taxExclude(scan.rules).contains(row.text))
            continue;
        for (const Amount &amount : scan.amounts[i]) {
            if (!agrees(amount.value, implied))
                continue;
            Field field = emptyField(QStringLiteral("tax"), QStringLiteral("Tax"));
            field.value = Money::twoDecimals(amount.value);
            field.confidence = 0.8;
            field.box = row.box(amount.range);
            return field;
        }
    }
    return std::nullopt;
}

} // namespace

Field findTax(const Scan &scan, std::optional<double> implied)
{
    const TaxPatterns &p = patterns();
    QList<TaxHit> hits;
    for (qsizetype i = 0; i < scan.rows.size(); ++i) {
        const Row &row = scan.rows[i];
        if (isColumnLabelRow(scan, i)) {
            // Column labels over their amounts: each tax label takes the amount under it.
            for (const TextLine &line : row.lines) {
                if (p.taxExclude(scan.rules).contains(line.text) ||
                    !p.taxLabel(scan.rules).contains(line.text))
                    continue;
                if (const auto rates = rateColumn(scan, i, line))
                    hits.append(*rates);
                else if (const auto near = amountBelow(scan, i, line))
                    hits.append(TaxHit{near->value, near->box, p.taxTotal(scan.rules).contains(line.text)});
            }
            continue;
        }
        if (scan.amounts[i].isEmpty() || !mayHoldTaxLabel(row.text, scan.rules) ||
            p.taxExclude(scan.rules).contains(row.text) || !isTaxRow(row, scan.rules))
            continue;
        const Amount &last = scan.amounts[i].last();
        hits.append(TaxHit{last.value, row.box(last.range), p.taxTotal(scan.rules).contains(row.text)});
    }
    Field field = chooseTax(hits);
    const auto value = Money::parse(field.value);
    if (!implied || !value || agrees(*value, *implied))
        return field;
    for (auto it = hits.crbegin(); it != hits.crend(); ++it) {
        if (agrees(it->amount, *implied)) {
            field.value = Money::twoDecimals(it->amount);
            field.confidence = 0.85;
            field.box = it->box;
            return field;
        }
    }
    if (scan.rules == RuleSet::Full) {
        if (const auto byRates = sumOfRates(hits, *implied))
            return *byRates;
        if (const auto worded = wordedAmount(scan, *implied))
            return *worded;
    }
    return field;
}

} // namespace Extractor
