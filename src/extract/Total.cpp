#include "Total.h"

#include "Keywords.h"
#include "Patterns.h"
#include "Vocabulary.h"
#include "model/Money.h"

#include <cmath>

namespace Extractor {

namespace {

struct TotalPatterns {
    RulePattern strongTotal{
        QStringLiteral(R"(grand\s*total|total\s*(amount\s*)?(due|payable)|amount\s*(due|payable)|)"
                       R"(balance\s*due|amount\s*to\s*pay|total\s*to\s*pay|balance\s*payable{total.gross})")};
    // What is left to pay after prepayments: a total, but the gross total wins over it.
    RulePattern amountPayable{QStringLiteral(R"((?!){total.due})")};
    RulePattern plainTotal{QStringLiteral(R"(\btotal\b{total.plain})")};
    RulePattern notTotal{QStringLiteral(
        R"(sub\s*-?\s*total|total\s*(tax|vat|gst|hst|discount|savings|items|qty|quantity|)"
        R"(before|excl|net|paid|tend)|(tax|vat|gst)\s*total|before\s*tax|excl\w*|items?\s*total|)"
        R"(net\s*total|tax\s*invoice{total.not})")};
    // Receipt rows that mention a total but do not hold the amount paid: a tax note ("GST @6% included in
    // total"), a count of stamps, a breakdown by tax rate ("Total 6% supplies"), and payment rows.
    Regex receiptNotTotal{QStringLiteral(R"(included\s*in\s*(the\s*)?total|total\s*includes|total\s*stamp|)"
                                         R"(total\s*\d{1,2}(\.\d+)?\s*%|\bchange\b|tender|^\W*cash\b)")};
    Regex roundingLabel{QStringLiteral(R"(\bround(ing|ed)?\b)")};
    Regex roundedTotal{
        QStringLiteral(R"(rounded\s*total|total\s*(after\s*)?round(ed|ing)|round(ed|ing)\s*total)")};
};

const TotalPatterns &patterns()
{
    return Patterns::compiledOnce<TotalPatterns>();
}

// A subtotal, a tax total and the like; with the receipt rules also a tax note, a stamp count, a
// breakdown by rate and the payment rows.
bool isNoTotal(const QString &text, const RuleFeatures &features)
{
    const TotalPatterns &p = patterns();
    return !Keywords::may(text, Keywords::TotalLabel, features) || p.notTotal(features).contains(text) ||
           (features.receiptTotals && p.receiptNotTotal.contains(text));
}

// The base confidence of a total label in `text`: 0.92 for a grand total, 0.86 for an amount payable
// after prepayments, 0.8 for a plain "Total"; 0 for no total label.
double labelBase(const QString &text, const RuleFeatures &features)
{
    const TotalPatterns &p = patterns();
    if (p.strongTotal(features).contains(text))
        return 0.92;
    if (p.amountPayable(features).contains(text))
        return 0.86;
    if (p.plainTotal(features).contains(text))
        return 0.8;
    return 0;
}

// A rounding row holding less than this is the adjustment; a larger amount is the rounded total.
constexpr double largestAdjustment = 1.0;

// A summary table's total row prints the net amount and then the smaller tax ("Total 22.50 1.35").
bool isSummaryRow(const QList<Amount> &amounts)
{
    return amounts.size() >= 2 && amounts.last().value < amounts.first().value;
}

// The index of the strongest candidate, the later one on equal confidence; -1 for none.
qsizetype strongest(const QList<TotalCandidate> &candidates)
{
    qsizetype best = -1;
    for (qsizetype i = 0; i < candidates.size(); ++i) {
        if (best < 0 || candidates[i].confidence >= candidates[best].confidence)
            best = i;
    }
    return best;
}

// Phase 2: the grand total is usually the largest amount on the page.
Field largestAmount(const Scan &scan, Field field)
{
    const Amount *largest = nullptr;
    qsizetype largestRow = -1;
    for (qsizetype i = 0; i < scan.rows.size(); ++i) {
        for (const Amount &amount : scan.amounts[i]) {
            if (!largest || amount.value > largest->value) {
                largest = &amount;
                largestRow = i;
            }
        }
    }
    if (largest && largest->value > 0) {
        field.value = Money::twoDecimals(largest->value);
        field.confidence = 0.35;
        field.box = scan.rows[largestRow].box(largest->range);
    }
    return field;
}

} // namespace

QList<TotalCandidate> totalCandidates(const Scan &scan)
{
    const TotalPatterns &p = patterns();
    const RuleFeatures &features = scan.features;
    QList<TotalCandidate> candidates;
    qsizetype best = -1;
    const auto keepStrongest = [&](qsizetype from) {
        for (qsizetype c = from; c < candidates.size(); ++c) {
            if (best < 0 || candidates[c].confidence >= candidates[best].confidence)
                best = c;
        }
    };
    for (qsizetype i = 0; i < scan.rows.size(); ++i) {
        const QString &text = scan.rows[i].text;
        if (isColumnLabelRow(scan, i)) {
            // A row of column labels ("Total HT  TVA  Total TTC") over their amounts; a row where no
            // label has one is read as any other.
            const qsizetype before = candidates.size();
            for (const TextLine &line : scan.rows[i].lines) {
                const double base = isNoTotal(line.text, features) ? 0 : labelBase(line.text, features);
                if (const auto near = base > 0 ? amountBelow(scan, i, line) : std::nullopt)
                    candidates.append(TotalCandidate{near->value, base - 0.1, near->box, i});
            }
            keepStrongest(before);
            if (candidates.size() > before)
                continue;
        }
        if (isNoTotal(text, features) || (scan.headerLike[i] && scan.amounts[i].isEmpty()))
            continue;
        double base = labelBase(text, features);
        const bool rounding = features.receiptTotals && p.roundingLabel.contains(text);
        const bool rounded = features.receiptTotals && p.roundedTotal.contains(text);
        if (rounded)
            base = 0.92;
        else if (rounding && base == 0)
            base = 0.8;
        if (base == 0 ||
            (features.receiptTotals && base == 0.8 && !rounding && isSummaryRow(scan.amounts[i])))
            continue;
        const auto near = amountNear(scan, i);
        if (!near || (features.receiptTotals && near->value == 0))
            continue;
        const double confidence = near->fromNextRow ? base - 0.15 : base;
        const qsizetype before = candidates.size();
        // A rounding adjustment makes the total before it the amount paid once added.
        if (rounding && !rounded && std::abs(near->value) < largestAdjustment) {
            if (best >= 0)
                candidates.append(TotalCandidate{candidates[best].value + near->value,
                                                 candidates[best].confidence, near->box, i});
        } else {
            candidates.append(TotalCandidate{near->value, confidence, near->box, i});
        }
        keepStrongest(before);
    }
    return candidates;
}

Field findTotal(const Scan &scan)
{
    return findTotal(scan, totalCandidates(scan));
}

Field findTotal(const Scan &scan, const QList<TotalCandidate> &candidates)
{
    Field field = emptyField(QStringLiteral("total"), QStringLiteral("Total"));
    // Labelled totals first; ties go to the later row (a receipt's last "Total" is the final one).
    if (const qsizetype best = strongest(candidates); best >= 0) {
        field.value = Money::twoDecimals(candidates[best].value);
        field.confidence = candidates[best].confidence;
        field.box = candidates[best].box;
        return field;
    }
    return largestAmount(scan, field);
}

} // namespace Extractor
