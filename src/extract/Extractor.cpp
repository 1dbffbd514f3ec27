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
#include "Subtotal.h"
#include "Tax.h"
#include "Total.h"
#include "TotalCheck.h"
#include "Vendor.h"
#include "model/Money.h"

namespace Extractor {

namespace {

// The tax a labelled subtotal and total imply, to check the tax rows against.
std::optional<double> impliedTax(const Field &subtotal, const Field &total, const RuleFeatures &features)
{
    const auto s = Money::amountOf(subtotal);
    const auto t = Money::amountOf(total);
    if (!features.impliedTax || !s || !t || subtotal.confidence < 0.7 || total.confidence < 0.7)
        return std::nullopt;
    return *t - *s;
}

// RuleFeatures::columnItems: the table read by its columns replaces the items read row by row, unless only
// the latter add up to the document's amounts.
QList<LineItem> chooseItems(const Scan &scan, QList<LineItem> byRows, const Field &subtotal, const Field &tax,
                            const Field &total)
{
    if (!scan.features.columnItems)
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
    const RuleFeatures features(rules);
    Scan scan = scanRows(buildRows(lines), features);
    const QList<Row> &rows = scan.rows;

    Field vendor = findVendor(lines, features);
    Field number = findNumber(rows, features);
    auto [date, dueDate] = findDates(rows, features);
    Field currency = findCurrency(rows, features);
    Field subtotal = findSubtotal(scan);
    const QList<TotalCandidate> totals = totalCandidates(scan);
    Field total = findTotal(scan, totals);
    Field tax = findTax(scan, impliedTax(subtotal, total, features));
    QList<LineItem> items = chooseItems(scan, findLineItems(scan), subtotal, tax, total);
    if (features.totalCheck)
        checkTotal(scan, totals, subtotal, tax, items, total);
    reconcile(subtotal, tax, total, items);
    if (features.crossCheckCaps)
        capFailedChecks(subtotal, tax, total, items);

    Result result;
    result.fields = {vendor, number, date, dueDate, currency, subtotal, tax, total};
    result.fields.append(extractCustomFields(custom, rows, &result.slowPatterns));
    result.items = std::move(items);
    result.rows = std::move(scan.rows);
    return result;
}

} // namespace Extractor
