#include "extract/Currency.h"
#include "RowFixtures.h"

#include <gtest/gtest.h>

using RowFixtures::rowsOf;

namespace {

struct Case {
    const char *name;
    QStringList rows;
    const char *code;
    double confidence;
};

void PrintTo(const Case &c, std::ostream *os)
{
    *os << c.name;
}

class CurrencyCases : public testing::TestWithParam<Case> {};

// Codes beat symbols, counts decide, ties keep the earlier symbol or the code seen first.
TEST_P(CurrencyCases, PicksCode)
{
    const Case &c = GetParam();
    const Field field = Extractor::findCurrency(rowsOf(c.rows));
    EXPECT_EQ(field.value, QString::fromUtf8(c.code));
    EXPECT_DOUBLE_EQ(field.confidence, c.confidence);
    EXPECT_EQ(field.box.has_value(), *c.code != '\0');
}

const Case cases[] = {
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
    {"NoRows", {}, "", 0},
};

INSTANTIATE_TEST_SUITE_P(Table, CurrencyCases, testing::ValuesIn(cases),
                         [](const auto &info) { return std::string(info.param.name); });

// The box sits on the first occurrence of the chosen code or symbol, even in a later row.
TEST(Currency, BoxOnFirstOccurrence)
{
    const QList<Row> rows = rowsOf({"$ 5.00", "Amount due USD 120.00", "USD"});
    EXPECT_EQ(Extractor::findCurrency(rows).box, rows[1].box(TextRange{11, 3}));
    const QList<Row> symbols = rowsOf({"Total", "Paid 4 \u00A3"});
    EXPECT_EQ(Extractor::findCurrency(symbols).box, symbols[1].box(TextRange{7, 1}));
}

struct FullCase {
    const char *name;
    QStringList rows;
    const char *locale;
    const char *code;
    double confidence;
};

void PrintTo(const FullCase &c, std::ostream *os)
{
    *os << c.name;
}

class FullCurrency : public testing::TestWithParam<FullCase> {};

// Full rules: marks count beside an amount only; codes, then local symbols, then a one-country legal
// form, then a lone $ or kr (read with the locale), then the locale's currency for unmarked amounts.
TEST_P(FullCurrency, ReadsLocalMarks)
{
    const FullCase &c = GetParam();
    const Field field =
        Extractor::findCurrency(rowsOf(c.rows), RuleSet::Full, QLocale(QString::fromLatin1(c.locale)));
    EXPECT_EQ(field.value, QString::fromUtf8(c.code));
    EXPECT_DOUBLE_EQ(field.confidence, c.confidence);
}

const FullCase fullCases[] = {
    {"RinggitBeforeAmount", {"Nasi lemak  RM4.50", "TOTAL RM  9.00"}, "en_GB", "MYR", 0.8},
    {"RinggitColumnUnit", {"ITEM  AMOUNT (RM)", "Teh tarik  2.00"}, "en_GB", "MYR", 0.8},
    {"RupeesAndSign", {"Masala dosa Rs. 120", "\u20B9 80.00"}, "en_GB", "INR", 0.8},
    {"SingaporeDollar", {"Kopi S$1.80"}, "en_AU", "SGD", 0.8},
    {"ZlotyAfterAmount", {"Razem 45,90 z\u0142"}, "en_GB", "PLN", 0.8},
    {"CodeBeatsLocalSymbol", {"Total CHF 12.00", "RM 3.00"}, "en_GB", "CHF", 0.9},
    {"LocalBeatsLoneDollar", {"$ 5.00", "$ 6.00", "Paid RM 11.00"}, "en_US", "MYR", 0.8},
    {"DollarIsTheLocaleDollar", {"Flat white $4.50"}, "en_AU", "AUD", 0.5},
    {"DollarElsewhereIsUsd", {"Flat white $4.50"}, "en_GB", "USD", 0.5},
    {"CrownOfTheLocale", {"Summa 95 kr"}, "nb_NO", "NOK", 0.5},
    {"CrownOutsideTheNordics", {"Summa 95 kr"}, "de_DE", "SEK", 0.5},
    {"LegalFormBeatsDollar", {"KEDAI MAJU SDN BHD", "AMT $ 7.00"}, "en_GB", "MYR", 0.6},
    {"MarkInsideWordsIgnored", {"FORM 12.00", "Ekran 3.00", "SIRM2"}, "en_GB", "GBP", 0.3},
    {"SymbolWithoutAmountIgnored", {"\u00A3 & \u20AC", "Total 8.00"}, "fr_FR", "EUR", 0.3},
    {"NoAmountNoGuess", {"Thank you"}, "en_GB", "", 0},
};

INSTANTIATE_TEST_SUITE_P(Table, FullCurrency, testing::ValuesIn(fullCases),
                         [](const auto &info) { return std::string(info.param.name); });

} // namespace
