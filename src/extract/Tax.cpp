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

// A rate table (RuleFeatures::rateTables: "Rate  Net  Tax" over "7 %  100,00  7,00" and "19 %  100,00
// 19,00"): the amounts under the tax label in the rows below that each print a rate, summed and outlined
// together. Nothing unless two or more such rows follow.
std::optional<TaxHit> rateColumn(const Scan &scan, qsizetype index, const TextLine &label)
{
    if (!scan.features.rateTables)
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
std::optional<TaxChoice> sumOfRates(const QList<TaxHit> &hits, double implied)
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
    if (!box || !Doubts::withinACent(sum, implied))
        return std::nullopt;
    return TaxChoice{sum, 0.88, *box};
}

// The implied tax printed in a row that names a tax anywhere ("Gesamtbetrag Steuer:  100,83 €"), the
// last such row: the arithmetic and the word together are the evidence.
std::optional<TaxChoice> wordedAmount(const Scan &scan, double implied)
{
    const TaxPatterns &p = patterns();
    for (qsizetype i = scan.rows.size() - 1; i >= 0; --i) {
        const Row &row = scan.rows[i];
        if (scan.amounts[i].isEmpty() || !p.taxWord(scan.features).contains(row.text) ||
            p.taxExclude(scan.features).contains(row.text))
            continue;
        for (const Amount &amount : scan.amounts[i]) {
            if (Doubts::withinACent(amount.value, implied))
                return TaxChoice{amount.value, 0.8, row.box(amount.range)};
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
                if (!Keywords::may(line.text, Keywords::TaxLabel, scan.features) ||
                    p.taxExclude(scan.features).contains(line.text) ||
                    !p.taxLabel(scan.features).contains(line.text))
                    continue;
                if (const auto rates = rateColumn(scan, i, line))
                    hits.append(*rates);
                else if (const auto near = amountBelow(scan, i, line))
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
        bool found = false;
        for (auto it = hits.crbegin(); it != hits.crend() && !found; ++it) {
            if (Doubts::withinACent(it->amount, *implied)) {
                choice = TaxChoice{it->amount, 0.85, it->box};
                found = true;
            }
        }
        if (!found && scan.features.taxBySum) {
            if (const auto byRates = sumOfRates(hits, *implied))
                choice = byRates;
            else if (const auto worded = wordedAmount(scan, *implied))
                choice = worded;
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
