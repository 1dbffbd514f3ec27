#include "extract/Reconcile.h"
#include "RowFixtures.h"

#include <gtest/gtest.h>

using RowFixtures::items;
using RowFixtures::money;

namespace {

// Missing money fields are derived from the others; agreeing arithmetic raises confidence.
TEST(Reconcile, FillsAndConfirms)
{
    // clang-format off
    const struct { const char *name; const char *s, *t, *T; QList<LineItem> items; const char *wantS, *wantT, *wantTotal; double confS, confT, confTotal; } cases[] = {
        {"AllAgree", "100.00", "8.00", "108.00", {}, "100.00", "8.00", "108.00", 0.97, 0.97, 0.97},
        {"TaxFromDifference", "100.00", "", "108.00", {}, "100.00", "8.00", "108.00", 0.8, 0.5, 0.8},
        {"ZeroTaxNeverNegativeZero", "100.00", "", "100.00", {}, "100.00", "0.00", "100.00", 0.8, 0.5, 0.8},
        {"DiscountShowsAsNegativeTax", "100.00", "", "95.00", {}, "100.00", "-5.00", "95.00", 0.8, 0.5, 0.8},
        {"SubtotalFromTotalLessTax", "", "8.00", "108.00", {}, "100.00", "8.00", "108.00", 0.5, 0.8, 0.8},
        {"TotalFromSubtotalPlusTax", "100.00", "8.00", "", {}, "100.00", "8.00", "108.00", 0.8, 0.8, 0.5},
        {"ItemsConfirmTotalAndGiveSubtotal", "", "", "60.00", items({"20.00", "40.00"}), "60.00", "", "60.00", 0.5, 0.0, 0.95},
        {"ItemsWithinTolerance", "60.00", "", "", items({"20.00", "40.01"}), "60.00", "", "", 0.95, 0.0, 0.0},
        {"ItemsOnlyGiveSubtotal", "", "", "", items({"2.50", "x"}), "2.50", "", "", 0.5, 0.0, 0.0},
        {"NothingToDo", "", "", "", {}, "", "", "", 0.0, 0.0, 0.0},
        {"UnparseableSubtotalLeftAlone", "abc", "", "", items({"3.00"}), "abc", "", "", 0.8, 0.0, 0.0},
    };
    // clang-format on
    for (const auto &c : cases) {
        Field s = money(c.s), t = money(c.t), T = money(c.T);
        Extractor::reconcile(s, t, T, c.items);
        EXPECT_EQ((QStringList{s.value, t.value, T.value}), (QStringList{c.wantS, c.wantT, c.wantTotal}))
            << c.name;
        EXPECT_EQ((QList<double>{s.confidence, t.confidence, T.confidence}),
                  (QList<double>{c.confS, c.confT, c.confTotal}))
            << c.name;
    }
}

} // namespace
