#include "extract/TotalCheck.h"
#include "RowFixtures.h"
#include "extract/Total.h"

#include <gtest/gtest.h>

namespace {

struct CheckCase {
    const char *name;
    QList<QStringList> rows;
    const char *subtotal;
    const char *tax;
    QStringList itemAmounts;
    const char *value;
    double confidence;
};

class CheckTotal : public ::testing::TestWithParam<CheckCase> {};

// The arithmetic picks among the labelled totals (cash minus change first) and marks a total that
// fails every check for review; without any check the total stays as found.
TEST_P(CheckTotal, PrefersTheConfirmedTotal)
{
    const CheckCase &c = GetParam();
    const Extractor::Scan s = RowFixtures::scan(c.rows, RuleSet::Full);
    Field total = Extractor::findTotal(s);
    Extractor::checkTotal(s, RowFixtures::money(c.subtotal), RowFixtures::money(c.tax),
                          RowFixtures::items(c.itemAmounts), total);
    EXPECT_EQ(total.value.toStdString(), c.value);
    EXPECT_DOUBLE_EQ(total.confidence, c.confidence);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(
    Cases, CheckTotal,
    ::testing::Values(
        CheckCase{"CashMinusChange", {{"Grand total", "24.00"}, {"Total", "25.00"}, {"Cash", "30.00"}, {"Change", "6.00"}}, "", "", {}, "24.00", 0.92},
        CheckCase{"SubtotalPlusTax", {{"Total", "53.00"}, {"Total", "3.00"}}, "50.00", "3.00", {}, "53.00", 0.9},
        CheckCase{"ItemsPlusTax", {{"Total", "12.60"}, {"Total", "12.00"}}, "", "0.60", {"5.00", "7.00"}, "12.60", 0.9},
        CheckCase{"FailsEveryCheck", {{"Total", "40.00"}, {"Cash", "50.00"}, {"Change", "5.00"}}, "", "", {}, "40.00", 0.6},
        CheckCase{"UnlabelledPaidAmount", {{"Nett", "45.00"}, {"Cash", "50.00"}, {"Change", "5.00"}}, "", "", {}, "45.00", 0.75},
        CheckCase{"NoCheckNoChange", {{"Total", "18.00"}}, "", "", {}, "18.00", 0.8}),
    [](const auto &info) { return std::string(info.param.name); });
// clang-format on

} // namespace
