#include "Amounts.h"
#include "Patterns.h"
#include "model/Money.h"

namespace Extractor {

namespace {

const Regex &strongTotal()
{
    static const Regex rx(
        QStringLiteral(R"(grand\s*total|total\s*(amount\s*)?(due|payable)|amount\s*(due|payable)|)"
                       R"(balance\s*due|amount\s*to\s*pay|total\s*to\s*pay|balance\s*payable)"));
    return rx;
}

const Regex &plainTotal()
{
    static const Regex rx(QStringLiteral(R"(\btotal\b)"));
    return rx;
}

const Regex &notTotal()
{
    static const Regex rx(QStringLiteral(
        R"(sub\s*-?\s*total|total\s*(tax|vat|gst|hst|discount|savings|items|qty|quantity|)"
        R"(before|excl|net|paid|tend)|(tax|vat|gst)\s*total|before\s*tax|excl\w*|items?\s*total|)"
        R"(net\s*total|tax\s*invoice)"));
    return rx;
}

} // namespace

Field findTotal(const Scan &scan)
{
    Field field = emptyField(QStringLiteral("total"), QStringLiteral("Total"));

    // Phase 1: labelled totals; ties go to the later row (a receipt's last "Total" is the final one).
    std::optional<NearAmount> best;
    double bestConfidence = 0;
    for (qsizetype i = 0; i < scan.rows.size(); ++i) {
        const QString &text = scan.rows[i].text;
        // Every total label holds one of these words; most rows are rejected here without a pattern.
        if (!Patterns::mayContain(
                text, {QLatin1StringView("total"), QLatin1StringView("due"), QLatin1StringView("pay")}))
            continue;
        if (notTotal().contains(text))
            continue;
        if (scan.headerLike[i] && scan.amounts[i].isEmpty())
            continue;
        double base = 0;
        if (strongTotal().contains(text))
            base = 0.92;
        else if (plainTotal().contains(text))
            base = 0.8;
        else
            continue;
        const auto near = amountNear(scan, i);
        if (!near)
            continue;
        const double confidence = near->fromNextRow ? base - 0.15 : base;
        if (!best || confidence >= bestConfidence) {
            best = near;
            bestConfidence = confidence;
        }
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
