#include "extract/Tax.h"
#include "RowFixtures.h"

#include <gtest/gtest.h>

using RowFixtures::scan;

namespace {

// Separate tax lines add up; a tax-total row overrides them; exclusions never count.
TEST(FindTax, SumsSeparateLinesPrefersTaxTotal)
{
    Field tax = Extractor::findTax(scan({{"Sales tax", "1.50"}, {"City tax", "0.50"}}));
    EXPECT_EQ(tax.value, QStringLiteral("2.00"));
    EXPECT_DOUBLE_EQ(tax.confidence, 0.6);
    ASSERT_TRUE(tax.box);
    EXPECT_NEAR(tax.box->rect.top(), 0.13, 1e-9); // the last hit, "0.50"

    tax = Extractor::findTax(scan({{"Sales tax", "1.50"}, {"City tax", "0.50"}, {"Total tax", "2.00"}}));
    EXPECT_EQ(tax.value, QStringLiteral("2.00"));
    EXPECT_DOUBLE_EQ(tax.confidence, 0.88);

    tax = Extractor::findTax(scan({{"VAT no. GB123456789", "12.00"}, {"Tax rate 8%", "3.00"}}));
    EXPECT_TRUE(tax.value.isEmpty());
    EXPECT_EQ(tax.confidence, 0.0);

    tax = Extractor::findTax(scan({{"VAT 20%", "4.00"}}));
    EXPECT_EQ(tax.value, QStringLiteral("4.00"));
    EXPECT_DOUBLE_EQ(tax.confidence, 0.82);
}

// A label in a later member line counts; amounts only come from the label's own row.
TEST(FindTax, LabelInMemberLineButNeverNextRow)
{
    Field tax = Extractor::findTax(scan({{"Thanks!", "GST", "0.70"}}));
    EXPECT_EQ(tax.value, QStringLiteral("0.70"));
    tax = Extractor::findTax(scan({{"Tax"}, {"8.00"}}));
    EXPECT_TRUE(tax.value.isEmpty());
}

} // namespace
