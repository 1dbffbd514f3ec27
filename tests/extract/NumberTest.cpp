#include "extract/Number.h"
#include "RowFixtures.h"

#include <gtest/gtest.h>

using RowFixtures::lineOf;
using RowFixtures::rowsOf;

namespace {

// Each rule's confidence and bonus, the date and digit filters, and tie-breaking by order.
TEST(Number, FindsNumber)
{
    // clang-format off
    const struct { const char *name; QStringList rows; const char *value; double confidence; } cases[] = {
        {"InvoiceNoColon", {"Invoice No: INV-2024-001"}, "INV-2024-001", 0.92},
        {"OrderHash", {"Order # 12345"}, "12345", 0.67},
        {"ReferenceNoBonus", {"Reference ABC123"}, "ABC123", 0.7},
        {"InvoiceDateIsNoNumber", {"Invoice Date: 12/03/2024"}, "", 0},
        {"InvoiceDateValueRejected", {"Invoice 12/03/2024"}, "", 0},
        {"TrimsSeparators", {"Receipt: 00123-."}, "00123", 0.92},
        {"EnDashSeparator", {"Invoice \u2013 4471"}, "4471", 0.85},
        {"NumberWordBonus", {"Bill number 77812"}, "77812", 0.77},
        {"InvAbbreviation", {"INV. 8812"}, "8812", 0.85},
        {"TransactionBase", {"Transaction 55512"}, "55512", 0.6},
        {"TooShortForLabel", {"Invoice 12"}, "", 0},
        {"CutAt25", {"Invoice 12345678901234567890123456789"}, "1234567890123456789012345", 0.85},
        {"PrefixedAlone", {"Payment for PO-4711 received"}, "PO-4711", 0.72},
        {"HashTooShort", {"# 12"}, "", 0},
        {"HashNumber", {"Table #4711"}, "4711", 0.45},
        {"EarlierRowWinsTie", {"Ref A1234", "Doc B5678"}, "A1234", 0.7},
        {"HigherLaterWins", {"#9999", "Invoice #1234"}, "1234", 0.92},
        {"StackedLabel", {"Invoice number", "A-10023 Due 2024-01-31"}, "A-10023", 0.7},
        {"StackedDateRejected", {"Invoice no.", "2024-01-31"}, "", 0},
        {"StackedOnLastRow", {"Invoice no:"}, "", 0},
    };
    // clang-format on
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const Field field = Extractor::findNumber(rowsOf(c.rows));
        EXPECT_EQ(field.value, QString::fromUtf8(c.value));
        EXPECT_NEAR(field.confidence, c.confidence, 1e-9);
        EXPECT_EQ(field.box.has_value(), *c.value != '\0');
    }
}

// A labelled value keeps its own box (the untrimmed group), which the prefixed rule does not replace; a
// stacked number takes the whole first line of the next row as its box, on the same page only.
TEST(Number, Boxes)
{
    const QList<Row> labelled = rowsOf({"Invoice No: INV-2024-001"});
    EXPECT_EQ(Extractor::findNumber(labelled).box, labelled[0].box(TextRange{12, 12}));

    const TextLine label = lineOf(QStringLiteral("Invoice number"), 0.1, 0.10);
    const TextLine value = lineOf(QStringLiteral("A-10023 Due 2024-01-31"), 0.1, 0.13);
    const Field field = Extractor::findNumber({Row(0, {label}), Row(0, {value, lineOf("Total", 0.6, 0.13)})});
    EXPECT_EQ(field.value, QStringLiteral("A-10023"));
    EXPECT_EQ(field.box, (PageBox{0, value.rect}));
    const TextLine nextPage = lineOf(QStringLiteral("A-10023"), 0.1, 0.05, 1);
    EXPECT_TRUE(Extractor::findNumber({Row(0, {label}), Row(1, {nextPage})}).value.isEmpty());
}

} // namespace
