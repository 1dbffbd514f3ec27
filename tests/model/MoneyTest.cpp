#include "model/Money.h"

#include <gtest/gtest.h>
#include <optional>

namespace {

// Every amount form users and the extractor hand to parse reads as the documented number (or nothing).
TEST(Money, ParsesAmountText)
{
    // clang-format off
    const std::pair<const char16_t *, std::optional<double>> cases[] = {
        {u"1,234.56", 1234.56},
        {u"1.234,56", 1234.56},
        {u"1 234,56", 1234.56},
        {u"1.234.567,8", 1234567.8},
        {u"1,234,567", 1234567},
        {u"0.125", 125}, // a lone separator before exactly three digits groups thousands
        {u"0,125", 125},
        {u"12,34", 12.34},
        {u"12,5", 12.5},
        {u"12.", 12},
        {u"(12.00)", -12},
        {u"-12.00", -12},
        {u"$-12.00", 12},
        {u"(5", 5},
        {u"$1,200", 1200},
        {u"€ 45", 45},
        {u"abc12.30xyz", 12.3},
        {u" \n 7.10\t", 7.1},
        {u"", {}},
        {u"-", {}},
        {u".", {}},
        {u"١٢.٥٠", {}}, // numeric characters that are not ASCII digits cannot be converted
    };
    // clang-format on
    for (const auto &[text, expected] : cases)
        EXPECT_EQ(Money::parse(QString::fromUtf16(text)), expected) << QString::fromUtf16(text).toStdString();
}

// Quantities are compact; the near-integer test and the three-decimal format disagree on purpose ("2.").
TEST(Money, FormatsQuantitiesCompactly)
{
    // clang-format off
    const std::pair<double, const char *> cases[] = {
        {3.0, "3"},
        {2.5, "2.5"},
        {0.3333, "0.333"},
        {2.00005, "2"},
        {2.0001, "2."},
        {1e20, "100000000000000000000"},
    };
    // clang-format on
    for (const auto &[quantity, expected] : cases)
        EXPECT_EQ(Money::formatQuantity(quantity).toStdString(), expected) << quantity;
}

// Display follows the locale; machine text has a point, no grouping, and rounds binary ties to even.
TEST(Money, DisplayFollowsLocaleMachineTextDoesNot)
{
    const QStringList texts{Money::pretty(1234.5, QLocale(QLocale::English, QLocale::UnitedStates)),
                            Money::pretty(1234.5, QLocale(QLocale::German, QLocale::Germany)),
                            Money::twoDecimals(1234.5), Money::twoDecimals(0.125), Money::twoDecimals(1e20)};
    EXPECT_EQ(texts, QStringList({"1,234.50", "1.234,50", "1234.50", "0.12", "100000000000000000000.00"}));
}

} // namespace
