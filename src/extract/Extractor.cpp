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
#include "Vendor.h"
#include "model/Money.h"

namespace Extractor {

namespace {

// The first subtotal-labelled row that yields an amount wins.
Field findSubtotal(const Scan &scan)
{
    Field field = emptyField(QStringLiteral("subtotal"), QStringLiteral("Subtotal"));
    for (qsizetype i = 0; i < scan.rows.size(); ++i) {
        if (!Patterns::subtotalRx().contains(scan.rows[i].text))
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

Result extract(const QList<TextLine> &lines, const QList<CustomFieldDef> &custom, RuleSet /*rules*/)
{
    Scan scan = scanRows(buildRows(lines));
    const QList<Row> &rows = scan.rows;

    Field vendor = findVendor(lines);
    Field number = findNumber(rows);
    auto [date, dueDate] = findDates(rows);
    Field currency = findCurrency(rows);
    Field subtotal = findSubtotal(scan);
    Field tax = findTax(scan);
    Field total = findTotal(scan);
    QList<LineItem> items = findLineItems(scan);
    reconcile(subtotal, tax, total, items);

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
