#include "RowFixtures.h"
#include "extract/Currency.h"
#include "extract/Dates.h"
#include "extract/Extractor.h"

#include <gtest/gtest.h>

using RowFixtures::itemTexts;
using RowFixtures::line;
using RowFixtures::valueOf;

namespace {

struct Cell {
    const char *text;
    double x;
    double y;
};

// Lines of an invented page, each as wide as its text at 0.012 per character.
QList<TextLine> page(const QList<Cell> &cells, int pageIndex = 0)
{
    QList<TextLine> lines;
    for (const Cell &c : cells) {
        const QString text = QString::fromUtf8(c.text);
        lines.append(line(text, c.x, c.y, 0.012 * double(text.size()), 0.015, pageIndex));
    }
    return lines;
}

const Field &fieldOf(const Extractor::Result &result, const char *key)
{
    return *std::find_if(result.fields.begin(), result.fields.end(),
                         [key](const Field &f) { return f.key == QLatin1String(key); });
}

// Items are read by their columns: a description printed above its amounts joins the one beside them,
// digits inside a description are no quantity, and a row whose quantity times price misses its amount
// is shown for review.
TEST(Layout, ItemsByColumns)
{
    // clang-format off
    const QList<TextLine> lines = page({
        {"Description", 0.05, 0.30}, {"Qty", 0.50, 0.30}, {"Unit price", 0.62, 0.30}, {"Amount", 0.80, 0.30},
        {"Exchange 2010 licence", 0.05, 0.34},
        {"for the Berlin office", 0.05, 0.36}, {"2", 0.50, 0.36}, {"45.00", 0.62, 0.36}, {"90.00", 0.80, 0.36},
        {"Setup", 0.05, 0.42}, {"1", 0.50, 0.42}, {"30.00", 0.62, 0.42}, {"35.00", 0.80, 0.42},
        {"Subtotal", 0.62, 0.48}, {"125.00", 0.80, 0.48},
    });
    // clang-format on
    const Extractor::Result result = Extractor::extract(lines, {}, RuleSet::Full);
    EXPECT_EQ(itemTexts(result.items),
              (QStringList{"2 x Exchange 2010 licence for the Berlin office = 90.00", "1 x Setup = 35.00"}));
    ASSERT_EQ(result.items.size(), 2);
    EXPECT_EQ(result.items[0].unitPrice, "45.00");
    EXPECT_GE(result.items[0].confidence, 0.7);
    EXPECT_LT(result.items[1].confidence, 0.7);
}

// A table continues on the next page under a repeated header whose columns lie elsewhere: the
// quantity now printed before the description still comes from its column.
TEST(Layout, TableContinuedOnTheNextPage)
{
    // clang-format off
    QList<TextLine> lines = page({
        {"Description", 0.05, 0.80}, {"Qty", 0.50, 0.80}, {"Amount", 0.80, 0.80},
        {"Cables", 0.05, 0.84}, {"4", 0.50, 0.84}, {"20.00", 0.80, 0.84},
    });
    lines += page({
        {"Qty", 0.05, 0.10}, {"Description", 0.15, 0.10}, {"Amount", 0.80, 0.10},
        {"3", 0.05, 0.14}, {"Switch 24 ports", 0.15, 0.14}, {"150.00", 0.80, 0.14},
        {"Total", 0.62, 0.24}, {"170.00", 0.80, 0.24},
    }, 1);
    // clang-format on
    const Extractor::Result result = Extractor::extract(lines, {}, RuleSet::Full);
    EXPECT_EQ(itemTexts(result.items), (QStringList{"4 x Cables = 20.00", "3 x Switch 24 ports = 150.00"}));
}

// Subtotal, tax and total arithmetic decides the tax: a rate table's taxes add up, and a tax that
// does not make the total is not shown confident.
TEST(Layout, TaxByRate)
{
    const QList<QStringList> rateTable{{"Net amount", "200.00"},
                                       {"Rate", "Net", "Tax"},
                                       {"7 %", "100.00", "7.00"},
                                       {"19 %", "100.00", "19.00"},
                                       {"Total due", "226.00"}};
    const Extractor::Result rates = Extractor::extract(RowFixtures::invoice(rateTable), {}, RuleSet::Full);
    EXPECT_EQ(valueOf(rates, "tax"), "26.00");
    EXPECT_GE(fieldOf(rates, "tax").confidence, 0.7);

    const QList<QStringList> wrong{{"Subtotal", "100.00"}, {"Tax", "12.00"}, {"Total", "150.00"}};
    const Extractor::Result doubted = Extractor::extract(RowFixtures::invoice(wrong), {}, RuleSet::Full);
    EXPECT_LT(fieldOf(doubted, "tax").confidence, 0.7);
    EXPECT_LT(fieldOf(doubted, "subtotal").confidence, 0.7);
}

// Dates follow the document's convention, not only the user's: a dotted date is day first under
// en_US, and a due date before the issue date is shown for review.
TEST(Layout, DatesByConvention)
{
    const QLocale us(QLocale::English, QLocale::UnitedStates);
    const QDate today(2024, 6, 1);
    const auto dates = [&](const QStringList &texts) {
        return Extractor::findDates(RowFixtures::rowsOf(texts), us, today, RuleSet::Full);
    };
    EXPECT_EQ(dates({"Invoice date: 06.08.2018"}).first.value, "2018-08-06");
    EXPECT_EQ(dates({"Invoice date: 06/08/2018"}).first.value, "2018-06-08");
    EXPECT_EQ(dates({"Rechnungsdatum: 06/08/2018"}).first.value, "2018-08-06");
    const auto [issue, due] = dates({"Invoice date: 2024-03-10", "Due date: 2024-02-10"});
    EXPECT_EQ(due.value, "2024-02-10");
    EXPECT_LT(due.confidence, 0.7);
}

// Where no currency is printed, the country the page names gives it, below green; a printed symbol
// still wins.
TEST(Layout, CurrencyFromTheCountry)
{
    const auto currency = [](const QStringList &texts) {
        return Extractor::findCurrency(RowFixtures::rowsOf(texts), RuleSet::Full,
                                       QLocale(QLocale::English, QLocale::UnitedKingdom));
    };
    const Field malaysia = currency({"KEDAI RUNCIT", "81100 JOHOR BAHRU, JOHOR", "TOTAL 12.50"});
    EXPECT_EQ(malaysia.value, "MYR");
    EXPECT_LT(malaysia.confidence, 0.7);
    EXPECT_EQ(currency({"Tel +49 30 1234567", "Total 12,50"}).value, "EUR");
    EXPECT_EQ(currency({"Johor Bahru", "Total $12.50"}).value, "USD");
}

} // namespace
