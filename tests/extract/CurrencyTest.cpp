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

} // namespace
