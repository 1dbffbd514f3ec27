#include "TotalCheck.h"
#include "Patterns.h"

#include "Regex.h"
#include "Total.h"
#include "model/Doubts.h"
#include "model/Money.h"

#include <algorithm>

namespace Extractor {

namespace {

struct PaymentPatterns {
    Regex cashLabel{QStringLiteral(
        R"(^\W*(cash(\s*tendered)?|tendered|tender|amount\s*(paid|tendered)|paid|payment)\b)")};
    Regex changeLabel{QStringLiteral(R"(^\W*(change|balance\s*returned)\b)")};
};

const PaymentPatterns &patterns()
{
    return Patterns::compiledOnce<PaymentPatterns>();
}

using Doubts::withinACent;

// The last amount of the last row with the label, if any.
std::optional<double> lastLabelled(const Scan &scan, const Regex &label, qsizetype *row = nullptr)
{
    for (qsizetype i = scan.rows.size() - 1; i >= 0; --i) {
        if (!scan.amounts[i].isEmpty() && label.contains(scan.rows[i].text)) {
            if (row)
                *row = i;
            return scan.amounts[i].last().value;
        }
    }
    return std::nullopt;
}

// The values a total may be checked against, most trusted first.
QList<double> checks(const Scan &scan, const Field &subtotal, const Field &tax, const QList<LineItem> &items)
{
    QList<double> out;
    const auto cash = lastLabelled(scan, patterns().cashLabel);
    const auto change = lastLabelled(scan, patterns().changeLabel);
    if (cash && change && *cash > *change)
        out.append(*cash - *change);
    const auto s = Money::amountOf(subtotal);
    const auto t = Money::amountOf(tax);
    if (s && t)
        out.append(*s + *t);
    const double sum = Doubts::itemsSum(items).value_or(0);
    // Items are listed net where a tax is printed: their sum alone is then the subtotal.
    if (sum > 0)
        out.append(t ? sum + *t : sum);
    return out;
}

void set(Field &total, double value, double confidence, const PageBox &box)
{
    total.value = Money::twoDecimals(value);
    total.confidence = confidence;
    total.box = box;
}

} // namespace

void checkTotal(const Scan &scan, const Field &subtotal, const Field &tax, const QList<LineItem> &items,
                Field &total)
{
    checkTotal(scan, totalCandidates(scan), subtotal, tax, items, total);
}

void checkTotal(const Scan &scan, const QList<TotalCandidate> &candidates, const Field &subtotal,
                const Field &tax, const QList<LineItem> &items, Field &total)
{
    const PaymentPatterns &p = patterns();
    const QList<double> targets = checks(scan, subtotal, tax, items);
    if (targets.isEmpty())
        return;
    for (const double target : targets) {
        const TotalCandidate *best = nullptr;
        for (const TotalCandidate &c : candidates) {
            if (withinACent(c.value, target) && (!best || c.confidence >= best->confidence))
                best = &c;
        }
        if (best) {
            set(total, best->value, std::max(best->confidence, 0.9), best->box);
            return;
        }
    }
    if (candidates.isEmpty()) {
        // Cash minus change printed as an amount of its own (a subtotal, an unlabelled line) is what
        // was paid.
        const auto cash = lastLabelled(scan, p.cashLabel);
        const auto change = lastLabelled(scan, p.changeLabel);
        if (cash && change && withinACent(*cash - *change, targets.first())) {
            for (qsizetype i = 0; i < scan.rows.size(); ++i) {
                if (p.cashLabel.contains(scan.rows[i].text) || p.changeLabel.contains(scan.rows[i].text))
                    continue;
                for (const Amount &a : scan.amounts[i]) {
                    if (withinACent(a.value, targets.first())) {
                        set(total, a.value, 0.75, scan.rows[i].box(a.range));
                        return;
                    }
                }
            }
        }
    }
    if (!total.value.isEmpty())
        total.confidence = std::min(total.confidence, 0.6);
}

} // namespace Extractor
