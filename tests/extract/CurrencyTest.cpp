#include "extract/Currency.h"
#include "RowFixtures.h"

#include <gtest/gtest.h>

using RowFixtures::rowsOf;

namespace {

// Base rules: codes beat symbols, counts decide, ties keep the earlier symbol or the code seen first.
// Full rules: marks count beside an amount only; codes, then local symbols, then a one-country legal
// form, then a lone $ or kr (read with the locale), then the locale's currency for unmarked amounts,
// which alone has no box.
TEST(Currency, PicksTheCode)
{
    // clang-format off
    const struct { const char *name; QStringList rows; const char *code; double confidence; RuleSet rules = RuleSet::Core; const char *locale = "en_US"; } cases[] = {
        {"CodeBeatsSymbol", {"Total $ 120.00", "Amount due USD 120.00"}, "USD", 0.9},
        {"LowerCaseCodeIgnored", {"usd 120.00"}, "", 0},
        {"CodeInsideWordIgnored", {"USDT 5", "XEUR 3"}, "", 0},
        {"MostFrequentCode", {"EUR 1", "GBP 2", "GBP 3"}, "GBP", 0.9},
        {"CodeTieGoesToFirstSeen", {"CHF 1 SEK 2", "SEK 3 CHF 4"}, "CHF", 0.9},
        {"SymbolTieKeepsOrder", {"$1 $2", "\u20AC3 \u20AC4"}, "EUR", 0.75},
        {"MoreDollarsWin", {"\u20AC3", "$1 $2"}, "USD", 0.6},
        {"PoundBeatsYenOnTie", {"\u00A55", "\u00A38"}, "GBP", 0.75},
        {"Yen", {"\u00A5500"}, "JPY", 0.75},
        {"Nothing", {"Total 12.00"}, "", 0},
        {"RinggitBeforeAmount", {"Nasi lemak  RM4.50", "TOTAL RM  9.00"}, "MYR", 0.8, RuleSet::Full, "en_GB"},
        {"RinggitColumnUnit", {"ITEM  AMOUNT (RM)", "Teh tarik  2.00"}, "MYR", 0.8, RuleSet::Full, "en_GB"},
        {"RupeesAndSign", {"Masala dosa Rs. 120", "\u20B9 80.00"}, "INR", 0.8, RuleSet::Full, "en_GB"},
        {"SingaporeDollar", {"Kopi S$1.80"}, "SGD", 0.8, RuleSet::Full, "en_AU"},
        {"ZlotyAfterAmount", {"Razem 45,90 z\u0142"}, "PLN", 0.8, RuleSet::Full, "en_GB"},
        {"CodeBeatsLocalSymbol", {"Total CHF 12.00", "RM 3.00"}, "CHF", 0.9, RuleSet::Full, "en_GB"},
        {"LocalBeatsLoneDollar", {"$ 5.00", "$ 6.00", "Paid RM 11.00"}, "MYR", 0.8, RuleSet::Full, "en_US"},
        {"DollarIsTheLocaleDollar", {"Flat white $4.50"}, "AUD", 0.5, RuleSet::Full, "en_AU"},
        {"DollarElsewhereIsUsd", {"Flat white $4.50"}, "USD", 0.5, RuleSet::Full, "en_GB"},
        {"CrownOfTheLocale", {"Summa 95 kr"}, "NOK", 0.5, RuleSet::Full, "nb_NO"},
        {"CrownOutsideTheNordics", {"Summa 95 kr"}, "SEK", 0.5, RuleSet::Full, "de_DE"},
        {"LegalFormBeatsDollar", {"KEDAI MAJU SDN BHD", "AMT $ 7.00"}, "MYR", 0.6, RuleSet::Full, "en_GB"},
        {"MarkInsideWordsIgnored", {"FORM 12.00", "Ekran 3.00", "SIRM2"}, "GBP", 0.3, RuleSet::Full, "en_GB"},
        {"SymbolWithoutAmountIgnored", {"\u00A3 & \u20AC", "Total 8.00"}, "EUR", 0.3, RuleSet::Full, "fr_FR"},
        {"NoAmountNoGuess", {"Thank you"}, "", 0, RuleSet::Full, "en_GB"},
    };
    // clang-format on
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const Field field =
            Extractor::findCurrency(rowsOf(c.rows), c.rules, QLocale(QString::fromLatin1(c.locale)));
        EXPECT_EQ(field.value, QString::fromUtf8(c.code));
        EXPECT_DOUBLE_EQ(field.confidence, c.confidence);
        EXPECT_EQ(field.box.has_value(), c.confidence >= 0.5);
    }
}

// The box sits on the first occurrence of the chosen code or symbol, even in a later row.
TEST(Currency, BoxOnFirstOccurrence)
{
    const QList<Row> rows = rowsOf({"$ 5.00", "Amount due USD 120.00", "USD"});
    EXPECT_EQ(Extractor::findCurrency(rows).box, rows[1].box(TextRange{11, 3}));
    const QList<Row> symbols = rowsOf({"Total", "Paid 4 \u00A3"});
    EXPECT_EQ(Extractor::findCurrency(symbols).box, symbols[1].box(TextRange{7, 1}));
}

} // namespace
