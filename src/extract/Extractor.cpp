#include "Extractor.h"

#include "Amounts.h"
#include "Currency.h"
#include "CustomField.h"
#include "Dates.h"
#include "ItemColumns.h"
#include "LineItems.h"
#include "Number.h"
#include "Patterns.h"
#include "Reconcile.h"
#include "Rows.h"
#include "Tax.h"
#include "Total.h"
#include "TotalCheck.h"
#include "Vendor.h"
#include "model/Doubts.h"
#include "model/Money.h"

namespace Extractor {

namespace {

// In a row of label and amount pairs ("Excl. VAT  593,36  Subtotal  717,97") the full rules take the
// amount that follows the subtotal label rather than the row's last one.
std::optional<Amount> pairedAmount(const Scan &scan, qsizetype i)
{
    const QList<Amount> &amounts = scan.amounts[i];
    if (scan.rules != RuleSet::Full || amounts.size() < 2)
        return std::nullopt;
    const auto label = Patterns::shared().subtotalLabel(scan.rules).match(scan.rows[i].text);
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

// The first subtotal-labelled row that yields an amount wins.
Field findSubtotal(const Scan &scan)
{
    Field field = emptyField(QStringLiteral("subtotal"), QStringLiteral("Subtotal"));
    const Regex &label = Patterns::shared().subtotalLabel(scan.rules);
    for (qsizetype i = 0; i < scan.rows.size(); ++i) {
        if (!label.contains(scan.rows[i].text))
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

// The tax a labelled subtotal and total imply, for the full rules' check of the tax rows.
std::optional<double> impliedTax(const Field &subtotal, const Field &total, RuleSet rules)
{
    const auto s = Money::parse(subtotal.value);
    const auto t = Money::parse(total.value);
    if (rules != RuleSet::Full || !s || !t || subtotal.confidence < 0.7 || total.confidence < 0.7)
        return std::nullopt;
    return *t - *s;
}

// Whether the items' amounts add up to the subtotal, the total less the tax, or the total.
bool itemsAddUp(const QList<LineItem> &items, const Field &subtotal, const Field &tax, const Field &total)
{
    const auto sum = Doubts::itemsSum(items);
    const auto s = Money::parse(subtotal.value);
    const auto t = Money::parse(tax.value);
    const auto T = Money::parse(total.value);
    return sum && ((s && Doubts::withinACent(*sum, *s)) || (T && t && Doubts::withinACent(*sum, *T - *t)) ||
                   (T && Doubts::withinACent(*sum, *T)));
}

// Full rules: the table read by its columns replaces the items read row by row, unless only the
// latter add up to the document's amounts.
QList<LineItem> chooseItems(const Scan &scan, QList<LineItem> byRows, const Field &subtotal, const Field &tax,
                            const Field &total)
{
    if (scan.rules != RuleSet::Full)
        return byRows;
    std::optional<QList<LineItem>> byColumns = findItemsByColumns(scan);
    if (!byColumns ||
        (itemsAddUp(byRows, subtotal, tax, total) && !itemsAddUp(*byColumns, subtotal, tax, total)))
        return byRows;
    return std::move(*byColumns);
}

} // namespace

Result extract(const QList<TextLine> &lines, const QList<CustomFieldDef> &custom, RuleSet rules)
{
    Scan scan = scanRows(buildRows(lines), rules);
    const QList<Row> &rows = scan.rows;

    Field vendor = findVendor(lines, rules);
    Field number = findNumber(rows, rules);
    auto [date, dueDate] = findDates(rows, rules);
    Field currency = findCurrency(rows, rules);
    Field subtotal = findSubtotal(scan);
    Field total = findTotal(scan);
    Field tax = findTax(scan, impliedTax(subtotal, total, rules));
    QList<LineItem> items = chooseItems(scan, findLineItems(scan), subtotal, tax, total);
    if (rules == RuleSet::Full)
        checkTotal(scan, subtotal, tax, items, total);
    reconcile(subtotal, tax, total, items);
    if (rules == RuleSet::Full)
        capFailedChecks(subtotal, tax, total, items);

    Result result;
    result.fields = {vendor, number, date, dueDate, currency, subtotal, tax, total};
    for (const CustomFieldDef &def : custom) {
        bool abandoned = false;
        result.fields.append(extractCustom(def, rows, &abandoned));
        if (abandoned)
            result.slowPatterns.append(def.id);
    }
    result.items = std::move(items);
    result.rows = std::move(scan.rows);
    return result;
}

} // namespace Extractor
