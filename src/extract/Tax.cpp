#include "Tax.h"

#include "Patterns.h"
#include "model/Money.h"

namespace Extractor {

namespace {

const Regex &taxLabel()
{
    static const Regex rx(QStringLiteral(
        R"(^\W*(total\s+)?(sales\s+|state\s+|city\s+|county\s+|local\s+)?(tax|vat|gst|hst|pst|qst|iva|mwst|btw)\b)"));
    return rx;
}

const Regex &taxTotal()
{
    static const Regex rx(QStringLiteral(R"(total\s*tax|tax\s*total)"));
    return rx;
}

const Regex &taxExclude()
{
    static const Regex rx(
        QStringLiteral(R"(tax\s*(id|no|number|reg|invoice|code|rate)\b|vat\s*(id|no|number|reg)|)"
                       R"(\btin\b|taxable|incl|inclusive|tax\s*#)"));
    return rx;
}

struct TaxHit {
    double amount = 0;
    PageBox box;
    bool isTaxTotal = false;
};

// Every tax label holds one of these words (member lines are parts of the row text).
bool mayHoldTaxLabel(const QString &text)
{
    return Patterns::mayContain(
        text, {QLatin1StringView("tax"), QLatin1StringView("vat"), QLatin1StringView("gst"),
               QLatin1StringView("hst"), QLatin1StringView("pst"), QLatin1StringView("qst"),
               QLatin1StringView("iva"), QLatin1StringView("mwst"), QLatin1StringView("btw")});
}

bool isTaxRow(const Row &row)
{
    if (taxLabel().contains(row.text))
        return true;
    for (const TextLine &line : row.lines) {
        if (taxLabel().contains(line.text))
            return true;
    }
    return false;
}

} // namespace

Field findTax(const Scan &scan)
{
    Field field = emptyField(QStringLiteral("tax"), QStringLiteral("Tax"));
    QList<TaxHit> hits;
    for (qsizetype i = 0; i < scan.rows.size(); ++i) {
        const Row &row = scan.rows[i];
        if (scan.amounts[i].isEmpty() || !mayHoldTaxLabel(row.text) || taxExclude().contains(row.text) ||
            !isTaxRow(row))
            continue;
        const Amount &last = scan.amounts[i].last();
        hits.append(TaxHit{last.value, row.box(last.range), taxTotal().contains(row.text)});
    }
    if (hits.isEmpty())
        return field;

    for (auto it = hits.crbegin(); it != hits.crend(); ++it) {
        if (it->isTaxTotal) {
            field.value = Money::fixed2(it->amount);
            field.confidence = 0.88;
            field.box = it->box;
            return field;
        }
    }
    if (hits.size() == 1) {
        field.value = Money::fixed2(hits.first().amount);
        field.confidence = 0.82;
        field.box = hits.first().box;
        return field;
    }
    double sum = 0;
    for (const TaxHit &hit : hits)
        sum += hit.amount;
    field.value = Money::fixed2(sum);
    field.confidence = 0.6;
    field.box = hits.last().box;
    return field;
}

} // namespace Extractor
