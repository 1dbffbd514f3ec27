#include "extract/Dates.h"
#include "RowFixtures.h"

#include <gtest/gtest.h>

using RowFixtures::rowsOf;

namespace {

const QDate today(2025, 6, 15);

// Each date takes the kind of the label just before it, at 0.9, with its own box.
TEST(Dates, InlineLabelsClassifyEachDate)
{
    const QString text = QStringLiteral("Invoice Date: 03/04/2024   Due Date: 04/04/2024");
    const QList<Row> rows = rowsOf({text});
    const auto [date, due] = Extractor::findDates(rows, QLocale(QStringLiteral("en_US")), today);
    EXPECT_EQ(date.value, QStringLiteral("2024-03-04"));
    EXPECT_DOUBLE_EQ(date.confidence, 0.9);
    EXPECT_EQ(date.box, rows[0].box(TextRange{text.indexOf(u'0'), 10}));
    EXPECT_EQ(due.value, QStringLiteral("2024-04-04"));
    EXPECT_DOUBLE_EQ(due.confidence, 0.9);
    EXPECT_EQ(due.box, rows[0].box(TextRange{text.lastIndexOf(QStringLiteral("04/04")), 10}));
}

// Label classification, stacked labels, confidences and due dates derived from terms. One order per
// document: a date that only reads day first switches an American document to day first, one that only
// reads month first a British one; without such evidence, or with as much either way, the locale decides.
// The full rules read a scan's misread year of the 2100s-2900s as 20xx, below green, unless still in the
// future.
TEST(Dates, FindsIssueAndDue)
{
    // clang-format off
    const struct { const char *name; QStringList rows; const char *date; double dateConf; const char *due; double dueConf; const char *locale = "en_US"; RuleSet rules = RuleSet::Core; } cases[] = {
        {"StackedLabels", {"Invoice Date    Due Date", "03/04/2024   04/05/2024"}, "2024-03-04", 0.8, "2024-04-05", 0.8},
        {"StackedLabelsTwoRowsAbove", {"Invoice Date    Due Date", "Acme", "03/04/2024   04/05/2024"}, "2024-03-04", 0.55, "", 0},
        {"DateRowWithOwnLabel", {"Invoice Date    Due Date", "03/04/2024  Dated 04/05/2024"}, "2024-04-05", 0.9, "", 0},
        {"UnlabelledIsIssue", {"Acme Ltd 01/02/2024"}, "2024-01-02", 0.55, "", 0},
        {"LabelledBeatsEarlierUnlabelled", {"01/02/2024", "Invoice date: 03/02/2024"}, "2024-03-02", 0.9, "", 0},
        {"TieGoesToEarliest", {"Date 01/02/2024", "Date 03/02/2024"}, "2024-01-02", 0.9, "", 0},
        {"PayableByIsDue", {"Payable by: March 31, 2024"}, "", 0, "2024-03-31", 0.9},
        {"NetTermsAcrossYear", {"Date 2024-12-15", "net30"}, "2024-12-15", 0.9, "2025-01-14", 0.45},
        {"DueOnReceipt", {"Date: Jan 15 2024", "Payment due upon receipt"}, "2024-01-15", 0.9, "2024-01-15", 0.5},
        {"DueHitBeatsTerms", {"Date 2024-01-15", "Due 2024-03-01", "Net 30"}, "2024-01-15", 0.9, "2024-03-01", 0.9},
        {"NetThousandIsNoTerm", {"Date 2024-01-15", "Net 1000"}, "2024-01-15", 0.9, "", 0},
        {"TermsNeedIssueDate", {"Net 30"}, "", 0, "", 0},
        {"WeekdayAndRelativeWordsAreNoDates", {"Date: Tuesday", "Due tomorrow"}, "", 0, "", 0},
        {"MonthDayWithoutYear", {"Date March 5", "Due 5th Mar"}, "2025-03-05", 0.9, "2025-03-05", 0.9},
        {"DashedMonthNameHasNoDateShape", {"Date 05-Mar-2024"}, "", 0, "", 0},
        {"DayFirstOnlyDateSwitchesUs", {"Date 02/01/2018", "Printed 23/01/2018"}, "2018-01-02", 0.9, "", 0},
        {"MonthFirstOnlyDateSwitchesUk", {"Date 02/01/2018", "Printed 12/23/2018"}, "2018-02-01", 0.9, "", 0, "en_GB"},
        {"UsLocaleDecides", {"Date 02/01/2018"}, "2018-02-01", 0.9, "", 0},
        {"UkLocaleDecides", {"Date 02/01/2018"}, "2018-01-02", 0.9, "", 0, "en_GB"},
        {"EvenEvidenceKeepsLocale", {"Date 02/01/2018", "23/01/2018", "01/23/2018"}, "2018-02-01", 0.9, "", 0},
        {"FullRulesRepairMisreadYear", {"Date: 14/03/2618"}, "2018-03-14", 0.6, "", 0, "en_GB", RuleSet::Full},
        {"FullRulesKeepFutureYear", {"Date: 14/03/2427"}, "2427-03-14", 0.9, "", 0, "en_GB", RuleSet::Full},
        {"CoreRulesKeepMisreadYear", {"Date: 14/03/2618"}, "2618-03-14", 0.9, "", 0, "en_GB"},
    };
    // clang-format on
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const auto [date, due] =
            Extractor::findDates(rowsOf(c.rows), QLocale(QString::fromLatin1(c.locale)), today, c.rules);
        EXPECT_EQ(date.value, QString::fromLatin1(c.date));
        EXPECT_DOUBLE_EQ(date.confidence, c.dateConf);
        EXPECT_EQ(due.value, QString::fromLatin1(c.due));
        EXPECT_DOUBLE_EQ(due.confidence, c.dueConf);
    }
}

// The date text is ASCII year-month-day whatever the default locale.
TEST(Dates, FormatDateIgnoresLocale)
{
    const QLocale saved;
    QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt));
    EXPECT_EQ(Extractor::formatDate(QDate(2024, 3, 4)), QStringLiteral("2024-03-04"));
    EXPECT_EQ(Extractor::formatDate(QDate(999, 12, 31)), QStringLiteral("0999-12-31"));
    QLocale::setDefault(saved);
}

} // namespace
