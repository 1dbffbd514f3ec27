#include "extract/TotalCheck.h"
#include "RowFixtures.h"
#include "extract/Total.h"

#include <gtest/gtest.h>

namespace {

// The arithmetic picks among the labelled totals (cash minus change first) and marks a total that
// fails every check for review; without any check the total stays as found.
TEST(CheckTotal, PrefersTheConfirmedTotal)
{
    // clang-format off
    const struct { const char *name; QList<QStringList> rows; const char *subtotal, *tax; QStringList itemAmounts; const char *value; double confidence; } cases[] = {
        {"CashMinusChange", {{"Grand total", "24.00"}, {"Total", "25.00"}, {"Cash", "30.00"}, {"Change", "6.00"}}, "", "", {}, "24.00", 0.92},
        {"SubtotalPlusTax", {{"Total", "53.00"}, {"Total", "3.00"}}, "50.00", "3.00", {}, "53.00", 0.9},
        {"ItemsPlusTax", {{"Total", "12.60"}, {"Total", "12.00"}}, "", "0.60", {"5.00", "7.00"}, "12.60", 0.9},
        {"FailsEveryCheck", {{"Total", "40.00"}, {"Cash", "50.00"}, {"Change", "5.00"}}, "", "", {}, "40.00", 0.6},
        {"UnlabelledPaidAmount", {{"Nett", "45.00"}, {"Cash", "50.00"}, {"Change", "5.00"}}, "", "", {}, "45.00", 0.75},
        {"NoCheckNoChange", {{"Total", "18.00"}}, "", "", {}, "18.00", 0.8},
    };
    // clang-format on
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const Extractor::Scan s = RowFixtures::scan(c.rows, RuleSet::Full);
        Field total = Extractor::findTotal(s);
        Extractor::checkTotal(s, RowFixtures::money(c.subtotal), RowFixtures::money(c.tax),
                              RowFixtures::items(c.itemAmounts), total);
        EXPECT_EQ(total.value.toStdString(), c.value);
        EXPECT_DOUBLE_EQ(total.confidence, c.confidence);
    }
}

} // namespace
