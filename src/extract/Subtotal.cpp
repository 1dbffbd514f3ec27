#include "Subtotal.h"

#include "Keywords.h"
#include "Patterns.h"
#include "model/Money.h"

#include <algorithm>

namespace Extractor {

namespace {

// In a row of label and amount pairs ("Excl. VAT  593,36  Subtotal  717,97") the amount that follows
// the subtotal label rather than the row's last one.
std::optional<Amount> pairedAmount(const Scan &scan, qsizetype i)
{
    const QList<Amount> &amounts = scan.amounts[i];
    if (!scan.features.pairedSubtotal || amounts.size() < 2)
        return std::nullopt;
    const auto label = Patterns::shared().subtotalLabel(scan.features).match(scan.rows[i].text);
    for (qsizetype a = 0; label && a + 1 < amounts.size(); ++a) {
        if (amounts[a].range.start < label->range().end())
            continue;
        // Only where letters (another label) stand between this amount and the next.
        const qsizetype from = amounts[a].range.end();
        const QString between = scan.rows[i].text.mid(from, amounts[a + 1].range.start - from);
        if (std::count_if(between.begin(), between.end(), [](QChar c) { return c.isLetter(); }) >= 2)
            return amounts[a];
        return std::nullopt;
    }
    return std::nullopt;
}

} // namespace

Field findSubtotal(const Scan &scan)
{
    Field field = emptyField(QStringLiteral("subtotal"), QStringLiteral("Subtotal"));
    const Regex &label = Patterns::shared().subtotalLabel(scan.features);
    for (qsizetype i = 0; i < scan.rows.size(); ++i) {
        if (!Keywords::may(scan.rows[i].text, Keywords::SubtotalLabel, scan.features) ||
            !label.contains(scan.rows[i].text))
            continue;
        if (isColumnLabelRow(scan, i)) {
            for (const TextLine &line : scan.rows[i].lines) {
                const auto near = label.contains(line.text) ? amountBelow(scan, i, line) : std::nullopt;
                if (near) {
                    field.value = Money::twoDecimals(near->value);
                    field.confidence = 0.78;
                    field.box = near->box;
                    return field;
                }
            }
        }
        if (const auto own = pairedAmount(scan, i)) {
            field.value = Money::twoDecimals(own->value);
            field.confidence = 0.88;
            field.box = scan.rows[i].box(own->range);
            break;
        }
        if (const auto near = amountNear(scan, i)) {
            field.value = Money::twoDecimals(near->value);
            field.confidence = near->fromNextRow ? 0.7 : 0.88;
            field.box = near->box;
            break;
        }
    }
    return field;
}

} // namespace Extractor
