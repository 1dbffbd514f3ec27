#include "intake/AmountRepair.h"

#include <gtest/gtest.h>

// A space read after a decimal point is removed where the point ends a whole number and two digits end the
// amount; dates, times, numbered items and longer figures keep their text.
TEST(AmountRepair, JoinsOnlyAmountsSplitAtTheDecimalPoint)
{
    // clang-format off
    const std::pair<const char *, const char *> cases[] = {
        {"TOTAL RM 29. 70", "TOTAL RM 29.70"},
        {"86.  00 A", "86.00 A"},
        {"Rounding -0. 01", "Rounding -0.01"},
        {"1,234. 50", "1,234.50"},
        {"9. 90 19. 80", "9.90 19.80"},
        {"19. 10. 2018", "19. 10. 2018"},
        {"19.10. 18", "19.10. 18"},
        {"19-10. 18", "19-10. 18"},
        {"19. 10. 18", "19. 10. 18"},
        {"12:30. 45", "12:30. 45"},
        {"1. Item", "1. Item"},
        {"1. 500 g", "1. 500 g"},
        {"2. 5", "2. 5"},
        {"Qty. 20", "Qty. 20"},
        {"29 .70", "29 .70"},
        {". 70", ". 70"},
        {"", ""},
    };
    // clang-format on
    for (const auto &[read, repaired] : cases)
        EXPECT_EQ(AmountRepair::joinedDecimals(QString::fromUtf8(read)).toStdString(), repaired) << read;
}
