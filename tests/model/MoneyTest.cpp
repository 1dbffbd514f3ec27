#include "model/Money.h"

#include <gtest/gtest.h>
#include <optional>

namespace {

struct ParseCase {
    const char16_t *text;
    std::optional<double> expected;
};

class MoneyParse : public ::testing::TestWithParam<ParseCase> {};

// Every amount form users and the extractor hand to parse reads as the documented number (or nothing).
TEST_P(MoneyParse, ReadsAmountText)
{
    const ParseCase &c = GetParam();
    const auto value = Money::parse(QString::fromUtf16(c.text));
    ASSERT_EQ(value.has_value(), c.expected.has_value()) << QString::fromUtf16(c.text).toStdString();
    if (c.expected) {
        EXPECT_DOUBLE_EQ(*value, *c.expected) << QString::fromUtf16(c.text).toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(
    Examples, MoneyParse,
    ::testing::Values(ParseCase{u"1,234.56", 1234.56}, ParseCase{u"1.234,56", 1234.56},
                      ParseCase{u"1 234,56", 1234.56}, ParseCase{u"(12.00)", -12}, ParseCase{u"-12.00", -12},
                      ParseCase{u"-", std::nullopt}, ParseCase{u"", std::nullopt},
                      ParseCase{u"   ", std::nullopt}, ParseCase{u"$", std::nullopt},
                      ParseCase{u"$1,200", 1200}, ParseCase{u"€ 45", 45}, ParseCase{u"£3.5", 3.5},
                      ParseCase{u"¥1,000", 1000}, ParseCase{u"1,234", 1234}, ParseCase{u"12,34", 12.34},
                      ParseCase{u"0.125", 125}, ParseCase{u"0,125", 125},
                      ParseCase{u"1.234.567,8", 1234567.8}, ParseCase{u"1,234,567", 1234567},
                      ParseCase{u"abc12.30xyz", 12.3}, ParseCase{u"12.30 USD", 12.3},
                      ParseCase{u"12,5", 12.5}, ParseCase{u"$-12.00", 12}, ParseCase{u" \n 7.10\t", 7.1},
                      ParseCase{u"(5", 5}, ParseCase{u".", std::nullopt}, ParseCase{u"12.", 12},
                      // Numeric characters that are not ASCII digits cannot be converted.
                      ParseCase{u"١٢.٥٠", std::nullopt}, ParseCase{u"½", std::nullopt}));

struct QtyCase {
    double q;
    const char *expected;
};

class MoneyFormatQuantity : public ::testing::TestWithParam<QtyCase> {};

// Quantities are compact; the near-integer test and the three-decimal format disagree on purpose ("2.").
TEST_P(MoneyFormatQuantity, FormatsCompactly)
{
    EXPECT_EQ(Money::formatQuantity(GetParam().q).toStdString(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Examples, MoneyFormatQuantity,
                         ::testing::Values(QtyCase{3.0, "3"}, QtyCase{2.5, "2.5"}, QtyCase{1.25, "1.25"},
                                           QtyCase{0.3333, "0.333"}, QtyCase{2.00004, "2"}, QtyCase{2.0, "2"},
                                           QtyCase{2.00005, "2"}, QtyCase{2.0001, "2."},
                                           QtyCase{2.0004, "2."}, QtyCase{0.5, "0.5"}, QtyCase{-2.0, "-2"},
                                           QtyCase{0.0, "0"}, QtyCase{-1.5, "-1.5"},
                                           QtyCase{1e20, "100000000000000000000"}));

// Display follows the locale's separators with two decimals; machine text never does.
TEST(MoneyFormat, PrettyFollowsLocaleFixedDoesNot)
{
    const QLocale us(QLocale::English, QLocale::UnitedStates);
    const QLocale de(QLocale::German, QLocale::Germany);
    EXPECT_EQ(Money::pretty(1234.5, us), QStringLiteral("1,234.50"));
    EXPECT_EQ(Money::pretty(1234.5, de), QStringLiteral("1.234,50"));
    EXPECT_EQ(Money::pretty(0, us), QStringLiteral("0.00"));
    EXPECT_EQ(Money::pretty(-5, us), QStringLiteral("-5.00"));
    EXPECT_EQ(Money::twoDecimals(1234.5), QStringLiteral("1234.50"));
    // Exact binary ties round to even, as "%.2f" does.
    EXPECT_EQ(Money::twoDecimals(0.125), QStringLiteral("0.12"));
    EXPECT_EQ(Money::twoDecimals(-0.375), QStringLiteral("-0.38"));
    EXPECT_EQ(Money::twoDecimals(1e20), QStringLiteral("100000000000000000000.00"));
}

} // namespace
