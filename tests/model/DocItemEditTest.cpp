#include "model/DocItem.h"
#include "model/Doubts.h"
#include "support/TestSupport.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

Field value(const QString &key, const QString &text)
{
    return {key, key, text, 0.9, false, {}, false, {}};
}

QList<LineItem> items(const QStringList &amounts)
{
    QList<LineItem> list;
    for (const QString &a : amounts)
        list.append({QUuid::createUuid(), {}, {}, {}, a, 0.0, false, {}});
    return list;
}

// Every published setter and hand edit signals once; hand edits change only their target and mark it
// edited; unknown targets change nothing and stay silent.
TEST(DocItemEdit, EditsMarkTheirTargetAndSignalOnce)
{
    DocItem doc(QStringLiteral("/tmp/a.pdf"));
    QSignalSpy spy(&doc, &DocItem::changed);
    doc.setStatus(DocStatus::Ready);
    doc.setProgress(1.0);
    doc.setApproved(true);
    doc.setFields({value("vendor", "Acme"), value("total", "16.50")});
    doc.setItems(items({"10.00", "5.00", "1.00"}));
    QList<Field> fields = doc.fields();
    QList<LineItem> rows = doc.items();
    doc.editField("total", "16.60");
    doc.editItem(rows[1].id, LineItem::UnitPrice, "2.50");
    const QUuid added = doc.addItem();
    doc.removeItem(rows[0].id);
    doc.editField("dueDate", "x");
    doc.editItem(QUuid::createUuid(), LineItem::Amount, "1.00");
    doc.removeItem(QUuid::createUuid());
    EXPECT_EQ(spy.count(), 9);
    fields[1].value = "16.60";
    fields[1].edited = true;
    EXPECT_EQ(doc.fields(), fields);
    rows[1].unitPrice = "2.50";
    rows[1].edited = true;
    EXPECT_EQ(doc.items(), (QList<LineItem>{rows[1], rows[2], {added, {}, "1", {}, {}, 0.0, true, {}}}));
}

// The items total sums the amounts that parse and matches a parsable subtotal within a cent.
TEST(DocItemEdit, ItemsTotal)
{
    const struct {
        QStringList amounts;
        QString subtotal;
        const char *total; // the sum and, given a subtotal, whether it matches; "none": no amount parses
    } cases[] = {
        // clang-format off
        {{"10.00", "5.00"}, "15.02", "15 differs"},
        {{"10.00", "5.00"}, "15.01", "15 matches"},
        {{"10.00", "5.00"}, "14.99", "15 matches"},
        {{"10.00", "5.00"}, "14.98", "15 differs"},
        {{"10.00", "n/a", ""}, "", "10"},
        {{"1,234.50"}, "1234.5", "1234.5 matches"},
        {{"n/a", ""}, "15.00", "none"},
        {{}, "15.00", "none"},
        // clang-format on
    };
    DocItem doc(QStringLiteral("/tmp/a.pdf"));
    for (const auto &c : cases) {
        doc.setFields({value("subtotal", c.subtotal)});
        doc.setItems(items(c.amounts));
        const std::optional<ItemsTotal> t = doc.itemsTotal();
        QString total = t ? QString::number(t->total, 'g', 17) : QStringLiteral("none");
        if (t && (t->subtotal || t->matches()))
            total += t->matches() ? " matches" : " differs";
        EXPECT_EQ(total, c.total) << (c.amounts.join(' ') + " / " + c.subtotal).toStdString();
    }
}

// Amounts that cannot all be right are doubted on the field that shows it; rounding to the cent, amounts
// that do not parse and missing amounts are not doubted.
TEST(DoubtsTest, AmountsThatDoNotAddUp)
{
    const struct {
        QString subtotal, tax, total;
        QStringList itemAmounts;
        QStringList doubted; // keys, in the order of the checks
    } cases[] = {
        // clang-format off
        {"15.00", "1.50", "16.50", {"10.00", "5.00"}, {}},
        {"15.00", "1.50", "16.51", {"10.00", "5.00"}, {}}, // a cent of rounding
        {"15.00", "1.50", "16.52", {}, {"total"}},
        {"15.00", "-1.50", "13.50", {}, {"tax", "total"}},
        {"15.00", "", "14.00", {}, {"total"}},
        {"15.00", "0.00", "15.00", {"10.00", "4.00"}, {"subtotal"}},
        {"15.00", "0", "15.00", {"10.00", "n/a"}, {"subtotal"}},
        {"15.00", "0", "15.00", {"n/a"}, {}},
        {"n/a", "-0.00", "16.50", {"1.00"}, {}}, // minus zero is not negative
        {"", "", "", {"1.00"}, {}},
        // clang-format on
    };
    for (const auto &c : cases) {
        const QList<Doubt> doubts =
            Doubts::of({value("subtotal", c.subtotal), value("tax", c.tax), value("total", c.total)},
                       items(c.itemAmounts));
        QStringList keys;
        for (const Doubt &d : doubts)
            keys.append(d.reason.isEmpty() ? "(no reason)" : d.key);
        EXPECT_EQ(keys, c.doubted) << QStringList{c.subtotal, c.tax, c.total}.join(" | ").toStdString();
    }
}

} // namespace
