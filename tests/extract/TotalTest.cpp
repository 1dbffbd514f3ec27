#include "extract/Total.h"
#include "RowFixtures.h"

#include <gtest/gtest.h>

using RowFixtures::scan;

namespace {

QList<double> values(const QString &text)
{
    QList<double> out;
    for (const auto &a : Extractor::amountCandidates(text))
        out.append(a.value);
    return out;
}

// The money pattern takes two-decimal numbers and symbol amounts, never dates or parts of longer numbers.
TEST(AmountCandidates, AcceptsMoneyRejectsDatesAndFragments)
{
    EXPECT_EQ(values("Total $1,234.56"), (QList<double>{1234.56}));
    EXPECT_EQ(values("(12.00) and -3.50"), (QList<double>{-12, -3.5}));
    EXPECT_EQ(values(QString::fromUtf16(u"€ 45 · £7")), (QList<double>{45, 7}));
    EXPECT_EQ(values("1.234,56 EUR"), (QList<double>{1234.56}));
    for (const char *text : {"12/05/2024", "2024.05.12", "qty 12", "1.2345", "12.50.3"})
        EXPECT_TRUE(values(text).isEmpty()) << text;
}

// Labelled totals win by strength and then by position; otherwise the largest amount at 0.35. The full
// rules on receipts: tax notes, stamp counts, per-rate lines, payment rows and a summary table's "net
// tax" row are no totals; rounded totals are, and a rounding adjustment is added to the total above.
TEST(FindTotal, ChoosesTheGrandTotal)
{
    // clang-format off
    const struct { const char *name; QList<QStringList> rows; const char *value; double confidence; RuleSet rules = RuleSet::Core; } cases[] = {
        {"PlainLabel", {{"Total", "$1,234.56"}}, "1234.56", 0.8},
        {"SubtotalSkipped", {{"Subtotal", "90.00"}, {"Total", "100.00"}}, "100.00", 0.8},
        {"LongLabelRowNoLookDown", {{"Total of all the services rendered"}, {"55.00"}, {"Other", "12.00"}}, "55.00", 0.35},
        {"BareIntegerInOneLine", {{"Total 12"}, {"9.00"}}, "12.00", 0.8},
        {"HeaderNotTotal", {{"Description", "Qty", "Price", "Total"}, {"Widget", "3.00"}}, "3.00", 0.35},
        {"LaterEqualWins", {{"Total", "10.00"}, {"Total", "12.00"}}, "12.00", 0.8},
        {"StrongBeatsPlain", {{"Grand total", "20.00"}, {"Total", "12.00"}}, "20.00", 0.92},
        {"StrongNextRow", {{"Balance due"}, {QString::fromUtf16(u"€ 7.00"), "8.00"}}, "7.00", 0.77},
        {"LargestFirstOccurrence", {{"a", "5.00"}, {"b", "120.00"}, {"c", "120.00"}, {"d", "7.50"}}, "120.00", 0.35},
        {"OnlyNegative", {{"a", "-5.00"}, {"b", "(7.00)"}}, "", 0.0},
        {"SummaryRowSkipped", {{"Total", "31.80"}, {"Cash", "50.00"}, {"Total", "30.00", "1.80"}}, "31.80", 0.8, RuleSet::Full},
        {"TaxNoteAndStamps", {{"Total", "21.20"}, {"VAT 6% included in total", "1.20"}, {"Total stamps: 3"}}, "21.20", 0.8, RuleSet::Full},
        {"PerRateLines", {{"Total 6% goods", "40.00"}, {"Total 0% goods", "2.00"}, {"Total", "42.00"}}, "42.00", 0.8, RuleSet::Full},
        {"PaymentRowsNever", {{"Total", "8.40"}, {"Cash total", "10.00"}, {"Change", "1.60"}}, "8.40", 0.8, RuleSet::Full},
        {"AdjustmentAdded", {{"Grand total", "17.52"}, {"Rounding adj", "-0.02"}}, "17.50", 0.92, RuleSet::Full},
        {"RoundedTotalIsStrong", {{"Total", "9.98"}, {"Rounded total", "10.00"}}, "10.00", 0.92, RuleSet::Full},
        {"LargeRoundingRowIsTheTotal", {{"Total", "60.02"}, {"Rounding", "60.00"}}, "60.00", 0.8, RuleSet::Full},
        {"ZeroTotalSkipped", {{"Total", "14.00"}, {"Total incl. tax", "0.00"}}, "14.00", 0.8, RuleSet::Full},
    };
    // clang-format on
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const Field total = Extractor::findTotal(scan(c.rows, c.rules));
        EXPECT_EQ(total.value.toStdString(), c.value);
        EXPECT_DOUBLE_EQ(total.confidence, c.confidence);
        EXPECT_EQ(total.box.has_value(), c.confidence > 0);
    }
}

// "T 12" is too short to hold a label besides its number, so the row below is used, on the same page only.
TEST(AmountNear, RowBelowOnTheSamePage)
{
    const auto near = Extractor::amountNear(scan({{"T 12"}, {"4.00"}}), 0);
    ASSERT_TRUE(near);
    EXPECT_EQ(near->value, 4.0);
    EXPECT_TRUE(near->fromNextRow);
    const QList<Row> rows{RowFixtures::row({"Total"}, 0.9, 0), RowFixtures::row({"10.00"}, 0.1, 1)};
    EXPECT_FALSE(Extractor::amountNear(Extractor::scanRows(rows), 0));
}

// The total's box outlines the amount, not the label, also when the match takes the blank before it.
TEST(FindTotalBox, OutlinesTheAmount)
{
    for (const char *amount : {"$1,234.56", "1,234.56"}) {
        const auto box = Extractor::findTotal(scan({{"Total", amount}})).box;
        EXPECT_NEAR(box.value_or(PageBox{}).rect.left(), 0.25, 1e-9) << amount; // no box gives 0
    }
    const auto amounts = Extractor::amountCandidates("Net  90.00");
    ASSERT_EQ(amounts.size(), 1);
    EXPECT_EQ(amounts[0].range, (TextRange{5, 5}));
}

} // namespace
