#include "extract/Extractor.h"
#include "RowFixtures.h"

#include <gtest/gtest.h>

using RowFixtures::line;

namespace {

QStringList keys(const QList<Field> &fields)
{
    QStringList out;
    for (const Field &f : fields)
        out.append(f.key);
    return out;
}

// The eight standard fields are always present, in order, with custom fields appended in definition order.
TEST(Extract, FixedFieldListAndCustomFieldsLast)
{
    const QStringList standard{"vendor", "number", "date", "dueDate", "currency", "subtotal", "tax", "total"};
    Extractor::Result result = Extractor::extract({}, {}, RuleSet::Core);
    EXPECT_EQ(keys(result.fields), standard);
    EXPECT_TRUE(result.rows.isEmpty());
    EXPECT_TRUE(result.items.isEmpty());
    for (const Field &f : result.fields) {
        EXPECT_TRUE(f.value.isEmpty()) << f.key.toStdString();
        EXPECT_FALSE(f.box.has_value());
    }

    const CustomFieldDef a{QUuid::createUuid(), "A", "po", false};
    const CustomFieldDef b{QUuid::createUuid(), "B", "x", true};
    const CustomFieldDef c{QUuid::createUuid(), "", "", false};
    result = Extractor::extract({line("Total 5.00", 0.1, 0.1)}, {a, b, c}, RuleSet::Core);
    ASSERT_EQ(result.fields.size(), 11);
    EXPECT_EQ(result.fields[8].key, uuidText(a.id));
    EXPECT_EQ(result.fields[9].key, uuidText(b.id));
    EXPECT_EQ(result.fields[10].label, QStringLiteral("Custom field"));
}

// The first subtotal row that yields an amount wins, also when an earlier labelled row has none.
TEST(Extract, SubtotalFromFirstRowWithAnAmount)
{
    const auto result = Extractor::extract(
        {line("Subtotal", 0.1, 0.1), line("see attached schedule", 0.1, 0.3), line("Net amount", 0.1, 0.5),
         line("40.00", 0.5, 0.5), line("Subtotal 99.00", 0.1, 0.7)},
        {}, RuleSet::Core);
    const Field &subtotal = result.fields[5];
    EXPECT_EQ(subtotal.value, QStringLiteral("40.00"));
    EXPECT_GE(subtotal.confidence, 0.88);
    EXPECT_NEAR(subtotal.box->rect.top(), 0.5, 1e-9);
}

// A realistic page: items, subtotal, tax and total agree, so all three are confirmed.
TEST(Extract, ReconcilesAWholeInvoice)
{
    const QList<TextLine> lines{
        line("Description", 0.1, 0.30), line("Qty", 0.5, 0.30),    line("Price", 0.6, 0.30),
        line("Amount", 0.75, 0.30),     line("Widget", 0.1, 0.33), line("2", 0.5, 0.33),
        line("5.00", 0.6, 0.33),        line("10.00", 0.75, 0.33), line("Gadget", 0.1, 0.36),
        line("1", 0.5, 0.36),           line("2.50", 0.6, 0.36),   line("2.50", 0.75, 0.36),
        line("Subtotal", 0.6, 0.40),    line("12.50", 0.75, 0.40), line("Tax", 0.6, 0.43),
        line("1.00", 0.75, 0.43),       line("Total", 0.6, 0.46),  line("$13.50", 0.75, 0.46)};
    const auto result = Extractor::extract(lines, {}, RuleSet::Core);
    ASSERT_EQ(result.items.size(), 2);
    EXPECT_EQ(result.fields[5].value, QStringLiteral("12.50"));
    EXPECT_EQ(result.fields[6].value, QStringLiteral("1.00"));
    EXPECT_EQ(result.fields[7].value, QStringLiteral("13.50"));
    for (int i = 5; i < 8; ++i)
        EXPECT_DOUBLE_EQ(result.fields[i].confidence, 0.97);
}

} // namespace
