#include "model/DocItem.h"
#include "model/Doubts.h"
#include "support/TestSupport.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

Field value(const QString &key, const QString &text)
{
    Field f = emptyField(key, key);
    f.value = text;
    f.confidence = 0.9;
    return f;
}

QList<LineItem> items(const QStringList &amounts)
{
    QList<LineItem> list;
    for (const QString &a : amounts) {
        LineItem item;
        item.amount = a;
        list.append(item);
    }
    return list;
}

// Each hand edit changes only its target, marks it edited and signals once; unknown targets are ignored.
TEST(DocItemEdit, EditsMarkTheirTargetAndSignalOnce)
{
    DocItem doc(QStringLiteral("/tmp/a.pdf"));
    doc.setFields({value("vendor", "Acme"), value("total", "16.50")});
    doc.setItems(items({"10.00", "5.00"}));
    const QList<LineItem> before = doc.items();
    QSignalSpy spy(&doc, &DocItem::changed);

    doc.editField("total", "16.60");
    EXPECT_EQ(spy.count(), 1);
    EXPECT_EQ(doc.fields()[1].value, "16.60");
    EXPECT_TRUE(doc.fields()[1].edited);
    EXPECT_FALSE(doc.fields()[0].edited);

    doc.editItem(before[1].id, LineItem::UnitPrice, "2.50");
    EXPECT_EQ(spy.count(), 2);
    EXPECT_EQ(doc.items()[1].unitPrice, "2.50");
    EXPECT_EQ(doc.items()[1].amount, "5.00");
    EXPECT_TRUE(doc.items()[1].edited);
    EXPECT_EQ(doc.items()[0], before[0]);

    const QUuid added = doc.addItem();
    EXPECT_EQ(spy.count(), 3);
    ASSERT_EQ(doc.items().size(), 3);
    LineItem expected;
    expected.id = added;
    expected.quantity = "1";
    expected.edited = true;
    EXPECT_EQ(doc.items()[2], expected);

    doc.removeItem(before[0].id);
    EXPECT_EQ(spy.count(), 4);
    EXPECT_EQ(doc.items().size(), 2);
    EXPECT_EQ(doc.items()[0].id, before[1].id);

    const QUuid nowhere = QUuid::createUuid();
    doc.editField("dueDate", "x");
    doc.editItem(nowhere, LineItem::Amount, "1.00");
    doc.removeItem(nowhere);
    EXPECT_EQ(spy.count(), 4);
}

// The items total sums the amounts that parse and matches a parsable subtotal within a cent.
TEST(DocItemEdit, ItemsTotal)
{
    struct Case {
        QStringList amounts;
        QString subtotal;
        std::optional<double> total; // nothing: no item amount parses
        std::optional<bool> matches; // nothing: no subtotal to compare with
    };
    // clang-format off
    const Case cases[] = {
        {{"10.00", "5.00"}, "15.02", 15.0, false},
        {{"10.00", "5.00"}, "15.01", 15.0, true},
        {{"10.00", "5.00"}, "14.99", 15.0, true},
        {{"10.00", "5.00"}, "14.98", 15.0, false},
        {{"10.00", "n/a", ""}, "", 10.0, std::nullopt},
        {{"1,234.50"}, "1234.5", 1234.5, true},
        {{"n/a", ""}, "15.00", std::nullopt, std::nullopt},
        {{}, "15.00", std::nullopt, std::nullopt},
    };
    // clang-format on
    for (const Case &c : cases) {
        DocItem doc(QStringLiteral("/tmp/a.pdf"));
        doc.setFields({value("subtotal", c.subtotal)});
        doc.setItems(items(c.amounts));
        const std::optional<ItemsTotal> total = doc.itemsTotal();
        ASSERT_EQ(total.has_value(), c.total.has_value()) << c.amounts.join(' ').toStdString();
        if (!total)
            continue;
        EXPECT_DOUBLE_EQ(total->total, *c.total);
        EXPECT_EQ(total->subtotal.has_value(), c.matches.has_value()) << c.subtotal.toStdString();
        EXPECT_EQ(total->matches(), c.matches.value_or(false)) << c.subtotal.toStdString();
    }
}

// Amounts that cannot all be right are doubted on the field that shows it; rounding to the cent, amounts
// that do not parse and missing amounts are not doubted.
TEST(DoubtsTest, AmountsThatDoNotAddUp)
{
    struct Case {
        QString subtotal, tax, total;
        QStringList itemAmounts;
        QStringList doubted; // keys, in the order of the checks
    };
    // clang-format off
    const Case cases[] = {
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
    };
    // clang-format on
    for (const Case &c : cases) {
        const QList<Field> fields = {value("subtotal", c.subtotal), value("tax", c.tax),
                                     value("total", c.total)};
        QStringList keys;
        for (const Doubt &d : Doubts::of(fields, items(c.itemAmounts))) {
            keys.append(d.key);
            EXPECT_FALSE(d.reason.isEmpty());
        }
        EXPECT_EQ(keys, c.doubted) << c.subtotal.toStdString() << " " << c.tax.toStdString() << " "
                                   << c.total.toStdString();
    }
}

} // namespace
