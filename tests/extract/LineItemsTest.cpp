#include "extract/LineItems.h"
#include "RowFixtures.h"

#include <gtest/gtest.h>

using RowFixtures::row;
using RowFixtures::scan;

namespace {

// One row becomes description, quantity, unit price and amount with a rule-based confidence, boxed on the
// row.
TEST(ParseItem, ReadsOneRow)
{
    // clang-format off
    const struct { const char *name; QStringList cells; bool hasHeader, found; const char *description, *quantity, *unitPrice, *amount; double confidence; } cases[] = {
        {"QtyPriceAmount", {"Widget", "2", "5.00", "10.00"}, true, true, "Widget", "2", "5.00", "10.00", 0.92},
        {"Inconsistent", {"Widget", "2", "5.00", "11.00"}, true, true, "Widget", "2", "5.00", "11.00", 0.55},
        {"AmountOnlyNoHeader", {"Consulting", "150.00"}, false, true, "Consulting", "1", "150.00", "150.00", 0.6},
        {"LeadingQuantity", {"3 x Coffee", "7.50"}, false, true, "Coffee", "3", "2.50", "7.50", 0.68},
        {"MetaWordsRejected", {"Invoice date", "12.00"}, false, false, "", "", "", "", 0},
        {"MetaWordsAllowedWithHeader", {"Invoice date", "12.00"}, true, true, "Invoice date", "1", "12.00", "12.00", 0.7},
        {"DerivedWholeQuantity", {"Apples", "1.50", "4.50"}, true, true, "Apples", "3", "1.50", "4.50", 0.78},
        {"DerivedHalfQuantity", {"Rope", "2.00", "5.00"}, true, true, "Rope", "2.5", "2.00", "5.00", 0.78},
        {"NoDerivedQuantity", {"Pears", "2.00", "4.90"}, true, true, "Pears", "1", "2.00", "4.90", 0.5},
        {"OneLetter", {"X", "5.00"}, true, false, "", "", "", "", 0},
        {"TrimSetEatsX", {"Wax", "3.00"}, true, true, "Wa", "1", "3.00", "3.00", 0.7},
        {"TrailingQuantityUnit", {"Widget 2 pcs", "10.00"}, true, true, "Widget", "2", "5.00", "10.00", 0.78},
        {"IndexDroppedWithHeader", {"1. Widget", "10.00"}, true, true, "Widget", "1", "10.00", "10.00", 0.7},
        {"IndexKeptWithoutHeader", {"1. Widget", "10.00"}, false, true, "1. Widget", "1", "10.00", "10.00", 0.6},
        {"ZeroPrice", {"Gift", "0.00", "0.00"}, true, true, "Gift", "1", "0.00", "0.00", 0.78},
        {"NoAmount", {"Widget", "2"}, true, false, "", "", "", "", 0},
    };
    // clang-format on
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const Row r = row(c.cells, 0.3);
        const auto item = Extractor::parseItem(r, Extractor::amountCandidates(r.text), c.hasHeader);
        ASSERT_EQ(item.has_value(), c.found);
        if (!item)
            continue;
        EXPECT_EQ((QStringList{item->description, item->quantity, item->unitPrice, item->amount}),
                  (QStringList{c.description, c.quantity, c.unitPrice, c.amount}));
        EXPECT_DOUBLE_EQ(item->confidence, c.confidence);
        EXPECT_EQ(item->box, (PageBox{0, r.rect}));
    }
}

// The header starts the table, a summary row ends it, repeated headers are skipped; without a header a
// summary row is only skipped and meta lines are no items; a header-like row with amounts is no header.
TEST(FindLineItems, TableBounds)
{
    // clang-format off
    const struct { QList<QStringList> rows; QStringList items; } cases[] = {
        {{{"ACME", "Invoice 10.00"}, {"Description", "Qty", "Price", "Amount"}, {"Widget", "2", "5.00", "10.00"}, {"Description", "Qty", "Price", "Amount"}, {"Gadget", "1", "3.00", "3.00"}, {"Subtotal", "13.00"}, {"Extra", "1.00"}}, {"2 x Widget = 10.00", "1 x Gadget = 3.00"}},
        {{{"Coffee", "3.00"}, {"Total", "3.00"}, {"Muffin", "2.50"}}, {"1 x Coffee = 3.00", "1 x Muffin = 2.50"}},
        {{{"Item", "Total", "9.00"}, {"Notebook", "9.00"}, {"Invoice no", "1.00"}}, {"1 x Notebook = 9.00"}},
    };
    // clang-format on
    for (const auto &c : cases)
        EXPECT_EQ(RowFixtures::itemTexts(Extractor::findLineItems(scan(c.rows))), c.items);
}

// Wrapped description lines join the item above only when directly below it on the same page.
TEST(FindLineItems, JoinsWrappedDescriptions)
{
    QList<Row> rows{row({"Description", "Qty", "Price", "Amount"}, 0.10),
                    row({"Shirt", "1", "20.00", "20.00"}, 0.13), row({"(blue,   size M)"}, 0.16),
                    row({"cotton"}, 0.19), row({"far below"}, 0.40)};
    EXPECT_EQ(RowFixtures::itemTexts(Extractor::findLineItems(Extractor::scanRows(rows))),
              QStringList{"1 x Shirt (blue, size M) cotton = 20.00"});
}

} // namespace
