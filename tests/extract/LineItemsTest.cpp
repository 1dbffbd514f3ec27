#include "extract/LineItems.h"
#include "RowFixtures.h"

#include <gtest/gtest.h>

using RowFixtures::row;
using RowFixtures::scan;

namespace {

struct ItemCase {
    const char *name;
    QStringList cells;
    bool hasHeader;
    bool found;
    const char *description, *quantity, *unitPrice, *amount;
    double confidence;
};

class ParseItem : public ::testing::TestWithParam<ItemCase> {};

// One row becomes description, quantity, unit price and amount with a rule-based confidence.
TEST_P(ParseItem, ReadsOneRow)
{
    const ItemCase &c = GetParam();
    const Row r = row(c.cells, 0.3);
    const auto item = Extractor::parseItem(r, Extractor::amountCandidates(r.text), c.hasHeader);
    ASSERT_EQ(item.has_value(), c.found);
    if (!item)
        return;
    EXPECT_EQ(item->description.toStdString(), c.description);
    EXPECT_EQ(item->quantity.toStdString(), c.quantity);
    EXPECT_EQ(item->unitPrice.toStdString(), c.unitPrice);
    EXPECT_EQ(item->amount.toStdString(), c.amount);
    EXPECT_DOUBLE_EQ(item->confidence, c.confidence);
    ASSERT_TRUE(item->box);
    EXPECT_EQ(item->box->rect, r.rect);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Cases, ParseItem,
    ::testing::Values(
        ItemCase{"QtyPriceAmount", {"Widget", "2", "5.00", "10.00"}, true, true, "Widget", "2", "5.00", "10.00", 0.92},
        ItemCase{"Inconsistent", {"Widget", "2", "5.00", "11.00"}, true, true, "Widget", "2", "5.00", "11.00", 0.55},
        ItemCase{"AmountOnlyNoHeader", {"Consulting", "150.00"}, false, true, "Consulting", "1", "150.00", "150.00", 0.6},
        ItemCase{"LeadingQuantity", {"3 x Coffee", "7.50"}, false, true, "Coffee", "3", "2.50", "7.50", 0.68},
        ItemCase{"MetaWordsRejected", {"Invoice date", "12.00"}, false, false, "", "", "", "", 0},
        ItemCase{"MetaWordsAllowedWithHeader", {"Invoice date", "12.00"}, true, true, "Invoice date", "1", "12.00", "12.00", 0.7},
        ItemCase{"DerivedWholeQuantity", {"Apples", "1.50", "4.50"}, true, true, "Apples", "3", "1.50", "4.50", 0.78},
        ItemCase{"DerivedHalfQuantity", {"Rope", "2.00", "5.00"}, true, true, "Rope", "2.5", "2.00", "5.00", 0.78},
        ItemCase{"NoDerivedQuantity", {"Pears", "2.00", "4.90"}, true, true, "Pears", "1", "2.00", "4.90", 0.5},
        ItemCase{"OneLetter", {"X", "5.00"}, true, false, "", "", "", "", 0},
        ItemCase{"TrimSetEatsX", {"Wax", "3.00"}, true, true, "Wa", "1", "3.00", "3.00", 0.7},
        ItemCase{"TrailingQuantityUnit", {"Widget 2 pcs", "10.00"}, true, true, "Widget", "2", "5.00", "10.00", 0.78},
        ItemCase{"IndexDroppedWithHeader", {"1. Widget", "10.00"}, true, true, "Widget", "1", "10.00", "10.00", 0.7},
        ItemCase{"IndexKeptWithoutHeader", {"1. Widget", "10.00"}, false, true, "1. Widget", "1", "10.00", "10.00", 0.6},
        ItemCase{"ZeroPrice", {"Gift", "0.00", "0.00"}, true, true, "Gift", "1", "0.00", "0.00", 0.78},
        ItemCase{"NoAmount", {"Widget", "2"}, true, false, "", "", "", "", 0}),
    [](const auto &info) { return std::string(info.param.name); });
// clang-format on

// The header starts the table, a summary row ends it, repeated headers are skipped; without a header a
// summary row is only skipped and meta lines are no items; a header-like row with amounts is no header.
TEST(FindLineItems, TableBounds)
{
    // clang-format off
    const struct {
        QList<QStringList> rows;
        QStringList descriptions;
    } cases[] = {
        {{{"ACME", "Invoice 10.00"}, {"Description", "Qty", "Price", "Amount"}, {"Widget", "2", "5.00", "10.00"}, {"Description", "Qty", "Price", "Amount"}, {"Gadget", "1", "3.00", "3.00"}, {"Subtotal", "13.00"}, {"Extra", "1.00"}}, {"Widget", "Gadget"}},
        {{{"Coffee", "3.00"}, {"Total", "3.00"}, {"Muffin", "2.50"}}, {"Coffee", "Muffin"}},
        {{{"Item", "Total", "9.00"}, {"Notebook", "9.00"}, {"Invoice no", "1.00"}}, {"Notebook"}},
    };
    // clang-format on
    for (const auto &c : cases) {
        QStringList descriptions;
        for (const LineItem &item : Extractor::findLineItems(scan(c.rows)))
            descriptions.append(item.description);
        EXPECT_EQ(descriptions, c.descriptions);
    }
}

// Wrapped description lines join the item above only when directly below it on the same page.
TEST(FindLineItems, JoinsWrappedDescriptions)
{
    QList<Row> rows{row({"Description", "Qty", "Price", "Amount"}, 0.10),
                    row({"Shirt", "1", "20.00", "20.00"}, 0.13), row({"(blue,   size M)"}, 0.16),
                    row({"cotton"}, 0.19), row({"far below"}, 0.40)};
    const auto items = Extractor::findLineItems(Extractor::scanRows(rows));
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items[0].description, QStringLiteral("Shirt (blue, size M) cotton"));
}

} // namespace
