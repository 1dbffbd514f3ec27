#include "Tax.h"

#include "Keywords.h"
#include "Patterns.h"
#include "Vocabulary.h"
#include "model/Doubts.h"
#include "model/Money.h"

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

bool isTaxRow(const Row &row, const RuleFeatures &features)
{
    const TaxPatterns &p = patterns();
    if (p.taxLabel(features).contains(row.text))
        return true;
    for (const TextLine &line : row.lines) {
        if (p.taxLabel(features).contains(line.text))
            return true;
    }
    return false;
}

struct TaxChoice {
    double amount = 0;
    double confidence = 0;
    PageBox box;
};

// The last tax-total row, else a single tax row, else the sum of several (separate state and city
// taxes add up).
std::optional<TaxChoice> chooseTax(const QList<TaxHit> &hits)
{
    if (hits.isEmpty())
        return std::nullopt;
    for (auto it = hits.crbegin(); it != hits.crend(); ++it) {
        if (it->isTaxTotal)
            return TaxChoice{it->amount, 0.88, it->box};
    }
    if (hits.size() == 1)
        return TaxChoice{hits.first().amount, 0.82, hits.first().box};
    double sum = 0;
    for (const TaxHit &hit : hits)
        sum += hit.amount;
    return TaxChoice{sum, 0.6, hits.last().box};
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
                if (!Keywords::may(line.text, Keywords::TaxLabel, scan.features) ||
                    p.taxExclude(scan.features).contains(line.text) ||
                    !p.taxLabel(scan.features).contains(line.text))
                    continue;
                if (const auto near = amountBelow(scan, i, line))
                    hits.append(
                        TaxHit{near->value, near->box, p.taxTotal(scan.features).contains(line.text)});
            }
            continue;
        }
        // Member lines are parts of the row text, so the row's words tell for them too.
        if (scan.amounts[i].isEmpty() || !Keywords::may(row.text, Keywords::TaxLabel, scan.features) ||
            p.taxExclude(scan.features).contains(row.text) || !isTaxRow(row, scan.features))
            continue;
        const Amount &last = scan.amounts[i].last();
        hits.append(TaxHit{last.value, row.box(last.range), p.taxTotal(scan.features).contains(row.text)});
    }
    std::optional<TaxChoice> choice = chooseTax(hits);
    if (implied && choice && !Doubts::withinACent(choice->amount, *implied)) {
        for (auto it = hits.crbegin(); it != hits.crend(); ++it) {
            if (Doubts::withinACent(it->amount, *implied)) {
                choice = TaxChoice{it->amount, 0.85, it->box};
                break;
            }
        }
    }
    Field field = emptyField(QStringLiteral("tax"), QStringLiteral("Tax"));
    if (choice) {
        field.value = Money::twoDecimals(choice->amount);
        field.confidence = choice->confidence;
        field.box = choice->box;
    }
    return field;
}

} // namespace Extractor
