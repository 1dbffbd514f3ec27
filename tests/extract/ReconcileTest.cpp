#include "extract/Reconcile.h"
#include "RowFixtures.h"

#include <gtest/gtest.h>

using RowFixtures::items;
using RowFixtures::money;

namespace {

struct ReconcileCase {
    const char *name;
    const char *s, *t, *T;
    QList<LineItem> items;
    const char *wantS, *wantT, *wantTotal;
    double confS, confT, confTotal;
};

class Reconcile : public ::testing::TestWithParam<ReconcileCase> {};

// Missing money fields are derived from the others; agreeing arithmetic raises confidence.
TEST_P(Reconcile, FillsAndConfirms)
{
    const ReconcileCase &c = GetParam();
    Field s = money(c.s), t = money(c.t), T = money(c.T);
    Extractor::reconcile(s, t, T, c.items);
    EXPECT_EQ(s.value.toStdString(), c.wantS);
    EXPECT_EQ(t.value.toStdString(), c.wantT);
    EXPECT_EQ(T.value.toStdString(), c.wantTotal);
    EXPECT_DOUBLE_EQ(s.confidence, c.confS);
    EXPECT_DOUBLE_EQ(t.confidence, c.confT);
    EXPECT_DOUBLE_EQ(T.confidence, c.confTotal);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Cases, Reconcile,
    ::testing::Values(
        ReconcileCase{"AllAgree", "100.00", "8.00", "108.00", {}, "100.00", "8.00", "108.00", 0.97, 0.97, 0.97},
        ReconcileCase{"TaxFromDifference", "100.00", "", "108.00", {}, "100.00", "8.00", "108.00", 0.8, 0.5, 0.8},
        ReconcileCase{"ZeroTaxNeverNegativeZero", "100.00", "", "100.00", {}, "100.00", "0.00", "100.00", 0.8, 0.5, 0.8},
        ReconcileCase{"DiscountShowsAsNegativeTax", "100.00", "", "95.00", {}, "100.00", "-5.00", "95.00", 0.8, 0.5, 0.8},
        ReconcileCase{"SubtotalFromTotalLessTax", "", "8.00", "108.00", {}, "100.00", "8.00", "108.00", 0.5, 0.8, 0.8},
        ReconcileCase{"TotalFromSubtotalPlusTax", "100.00", "8.00", "", {}, "100.00", "8.00", "108.00", 0.8, 0.8, 0.5},
        ReconcileCase{"ItemsConfirmTotalAndGiveSubtotal", "", "", "60.00", items({"20.00", "40.00"}), "60.00", "", "60.00", 0.5, 0.0, 0.95},
        ReconcileCase{"ItemsWithinTolerance", "60.00", "", "", items({"20.00", "40.01"}), "60.00", "", "", 0.95, 0.0, 0.0},
        ReconcileCase{"ItemsOnlyGiveSubtotal", "", "", "", items({"2.50", "x"}), "2.50", "", "", 0.5, 0.0, 0.0},
        ReconcileCase{"NothingToDo", "", "", "", {}, "", "", "", 0.0, 0.0, 0.0},
        ReconcileCase{"UnparseableSubtotalLeftAlone", "abc", "", "", items({"3.00"}), "abc", "", "", 0.8, 0.0, 0.0}),
    [](const auto &info) { return std::string(info.param.name); });
// clang-format on

} // namespace
