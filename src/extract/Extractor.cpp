#include "Extractor.h"

#include "Amounts.h"
#include "Currency.h"
#include "CustomField.h"
#include "Dates.h"
#include "LineItems.h"
#include "Number.h"
#include "Patterns.h"
#include "Rows.h"
#include "Tax.h"
#include "TotalCheck.h"
#include "Vendor.h"
#include "model/Money.h"

namespace Extractor {

namespace {

// The first subtotal-labelled row that yields an amount wins.
Field findSubtotal(const Scan &scan)
{
    Field field = emptyField(QStringLiteral("subtotal"), QStringLiteral("Subtotal"));
    for (qsizetype i = 0; i < scan.rows.size(); ++i) {
        if (!Patterns::subtotalRx(scan.rules).contains(scan.rows[i].text))
            continue;
        if (const auto near = amountNear(scan, i)) {
            field.value = Money::fixed2(near->value);
            field.confidence = near->fromNextRow ? 0.7 : 0.88;
            field.box = near->box;
            break;
        }
    }
    return field;
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
    Field tax = findTax(scan);
    Field total = findTotal(scan);
    QList<LineItem> items = findLineItems(scan);
    if (rules == RuleSet::Full)
        checkTotal(scan, subtotal, tax, items, total);
    reconcile(subtotal, tax, total, items);

    Result result;
    result.fields = {vendor, number, date, dueDate, currency, subtotal, tax, total};
    for (const CustomFieldDef &def : custom)
        result.fields.append(extractCustom(def, rows));
    result.items = std::move(items);
    result.rows = std::move(scan.rows);
    return result;
}

} // namespace Extractor
