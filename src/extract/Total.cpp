#include "Amounts.h"
#include "Patterns.h"
#include "Vocabulary.h"
#include "model/Money.h"

namespace Extractor {

namespace {

const Regex &strongTotal(RuleSet rules)
{
    static const RulePattern rx(
        QStringLiteral(R"(grand\s*total|total\s*(amount\s*)?(due|payable)|amount\s*(due|payable)|)"
                       R"(balance\s*due|amount\s*to\s*pay|total\s*to\s*pay|balance\s*payable{total.gross})"));
    return rx(rules);
}

// What is left to pay after prepayments: a total, but the gross total wins over it.
const Regex &amountPayable(RuleSet rules)
{
    static const RulePattern rx(QStringLiteral(R"((?!){total.due})"));
    return rx(rules);
}

const Regex &plainTotal(RuleSet rules)
{
    static const RulePattern rx(QStringLiteral(R"(\btotal\b{total.plain})"));
    return rx(rules);
}

const Regex &notTotal(RuleSet rules)
{
    static const RulePattern rx(QStringLiteral(
        R"(sub\s*-?\s*total|total\s*(tax|vat|gst|hst|discount|savings|items|qty|quantity|)"
        R"(before|excl|net|paid|tend)|(tax|vat|gst)\s*total|before\s*tax|excl\w*|items?\s*total|)"
        R"(net\s*total|tax\s*invoice{total.not})"));
    return rx(rules);
}

// Every base total label holds one of these words; most rows are rejected here without a pattern.
bool mayHoldTotalLabel(const QString &text, RuleSet rules)
{
    return rules == RuleSet::Full ||
           Patterns::mayContain(
               text, {QLatin1StringView("total"), QLatin1StringView("due"), QLatin1StringView("pay")});
}

// The base confidence of a total label in `text`: 0.92 for a grand total, 0.86 for an amount payable
// after prepayments, 0.8 for a plain "Total"; 0 for no total label (or a subtotal, tax total and the like).
double labelBase(const QString &text, RuleSet rules)
{
    if (!mayHoldTotalLabel(text, rules) || notTotal(rules).contains(text))
        return 0;
    if (strongTotal(rules).contains(text))
        return 0.92;
    if (amountPayable(rules).contains(text))
        return 0.86;
    if (plainTotal(rules).contains(text))
        return 0.8;
    return 0;
}

} // namespace

Field findTotal(const Scan &scan)
{
    Field field = emptyField(QStringLiteral("total"), QStringLiteral("Total"));

    // Phase 1: labelled totals; ties go to the later row (a receipt's last "Total" is the final one).
    std::optional<NearAmount> best;
    double bestConfidence = 0;
    const auto offer = [&](const NearAmount &near, double confidence) {
        if (!best || confidence >= bestConfidence) {
            best = near;
            bestConfidence = confidence;
        }
    };
    for (qsizetype i = 0; i < scan.rows.size(); ++i) {
        const QString &text = scan.rows[i].text;
        if (isColumnLabelRow(scan, i)) {
            // A row of column labels ("Total HT  TVA  Total TTC") over their amounts; a row where no
            // label has one is read as any other.
            bool found = false;
            for (const TextLine &line : scan.rows[i].lines) {
                const double base = labelBase(line.text, scan.rules);
                const auto near = base > 0 ? amountBelow(scan, i, line) : std::nullopt;
                if (near) {
                    offer(*near, base - 0.1);
                    found = true;
                }
            }
            if (found)
                continue;
        }
        if (scan.headerLike[i] && scan.amounts[i].isEmpty())
            continue;
        const double base = labelBase(text, scan.rules);
        if (base == 0)
            continue;
        const auto near = amountNear(scan, i);
        if (!near)
            continue;
        offer(*near, near->fromNextRow ? base - 0.15 : base);
    }
    if (best) {
        field.value = Money::fixed2(best->value);
        field.confidence = bestConfidence;
        field.box = best->box;
        return field;
    }

    // Phase 2: the grand total is usually the largest amount on the page.
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
        field.value = Money::fixed2(largest->value);
        field.confidence = 0.35;
        field.box = scan.rows[largestRow].box(largest->range);
    }
    return field;
}

} // namespace Extractor
