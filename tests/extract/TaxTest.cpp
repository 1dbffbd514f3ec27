#include "extract/Tax.h"
#include "RowFixtures.h"

#include <gtest/gtest.h>

using RowFixtures::scan;

namespace {

// Separate tax lines add up (boxed on the last); a tax-total row overrides them; exclusions never
// count; a label in a later member line counts, but amounts only come from the label's own row.
TEST(FindTax, ChoosesTheTaxRows)
{
    // clang-format off
    const struct { QList<QStringList> rows; const char *value; double confidence; } cases[] = {
        {{{"Sales tax", "1.50"}, {"City tax", "0.50"}}, "2.00", 0.6},
        {{{"Sales tax", "1.50"}, {"City tax", "0.50"}, {"Total tax", "2.00"}}, "2.00", 0.88},
        {{{"VAT no. GB123456789", "12.00"}, {"Tax rate 8%", "3.00"}}, "", 0},
        {{{"VAT 20%", "4.00"}}, "4.00", 0.82},
        {{{"Thanks!", "GST", "0.70"}}, "0.70", 0.82},
        {{{"Tax"}, {"8.00"}}, "", 0},
    };
    // clang-format on
    for (const auto &c : cases) {
        const Field tax = Extractor::findTax(scan(c.rows));
        EXPECT_EQ(tax.value, QString::fromLatin1(c.value)) << c.rows.first().join(" | ").toStdString();
        EXPECT_DOUBLE_EQ(tax.confidence, c.confidence) << c.rows.first().join(" | ").toStdString();
    }
    const Field summed = Extractor::findTax(scan({{"Sales tax", "1.50"}, {"City tax", "0.50"}}));
    EXPECT_NEAR(summed.box.value_or(PageBox{}).rect.top(), 0.09, 1e-9); // no box would give 0
}

} // namespace
