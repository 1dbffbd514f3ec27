#include "extract/DateDetector.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

using DateDetector::Order;

namespace {

const QDate today(2025, 6, 15);

// Forms that differ by order list both dates; the rest read the same either way. A date of "" is none; a
// matched text of "" is the whole input.
// clang-format off
const struct { const char *text, *dayFirst, *monthFirst, *matched; } forms[] = {
    {"2024-03-04", "2024-03-04", "2024-03-04", ""},
    {"2024/3/4", "2024-03-04", "2024-03-04", ""},
    {"03/04/2024", "2024-04-03", "2024-03-04", ""},
    {"4.3.24", "2024-03-04", "2024-04-03", ""},
    {"25/12/2024", "2024-12-25", "2024-12-25", ""},
    {"12/25/2024", "2024-12-25", "2024-12-25", ""},
    {"1/2/70", "1970-02-01", "1970-01-02", ""},
    {"1/2/69", "2069-02-01", "2069-01-02", ""},
    {"29/02/2024", "2024-02-29", "2024-02-29", ""},
    {"Date:01/02/2024", "2024-02-01", "2024-01-02", "01/02/2024"},
    {"Issued 12/03/2024 10:30", "2024-03-12", "2024-12-03", "12/03/2024"},
    {"2024-03-04T10:00:00", "2024-03-04", "2024-03-04", "2024-03-04"},
    {"March 5, 2024", "2024-03-05", "2024-03-05", ""},
    {"Mar. 5, 2024", "2024-03-05", "2024-03-05", ""},
    {"5th Mar 2024", "2024-03-05", "2024-03-05", ""},
    {"05-Mar-2024", "2024-03-05", "2024-03-05", ""},
    {"5-Mar-24", "2024-03-05", "2024-03-05", ""},
    {"Tue, 5 Mar 2024", "2024-03-05", "2024-03-05", ""},
    {"Tuesday, March 5, 2024", "2024-03-05", "2024-03-05", ""},
    {"1st of April 2024", "2024-04-01", "2024-04-01", ""},
    {"22nd June 2024", "2024-06-22", "2024-06-22", ""},
    {"Aug 23rd 2023", "2023-08-23", "2023-08-23", ""},
    {"Sept. 3rd, 2024", "2024-09-03", "2024-09-03", ""},
    {"SEPTEMBER 30 2024", "2024-09-30", "2024-09-30", ""},
    {"Jun 3, '24", "2024-06-03", "2024-06-03", ""},
    {"14 dec. 1999", "1999-12-14", "1999-12-14", ""},
    {"december 1st", "2025-12-01", "2025-12-01", ""},
    {"5 Mar", "2025-03-05", "2025-03-05", ""},
    {"Oct 10 12:30", "2025-10-10", "2025-10-10", "Oct 10"},
    {"Due: 7 July, 2024.", "2024-07-07", "2024-07-07", "7 July, 2024"},
    {"01.05.14-x", "2014-05-01", "2014-01-05", "01.05.14"},
    // Ranges count UTF-16 code units: text outside the BMP before the date shifts them by two.
    {"\xF0\x9F\x93\x85 5 Mar 2024", "2024-03-05", "2024-03-05", "5 Mar 2024"},
    // Dates that do not exist, and text that only looks like dates.
    {"31/02/2024", "", "", ""},
    {"29/02/2023", "", "", ""},
    {"30 Feb 2024", "", "", ""},
    {"Nov 31 2024", "", "", ""},
    {"Feb 29", "", "", ""},
    {"0000-01-01", "", "", ""},
    {"12.50", "", "", ""},
    {"+1-555-0100", "", "", ""},
    {"555-123-4567", "", "", ""},
    {"INV-2024-001", "", "", ""},
    {"INV-03-04-2024", "", "", ""},
    {"1.2.3.4", "", "", ""},
    {"1.03.04.2024", "", "", ""},
    {"1.234.567,89", "", "", ""},
    {"v2.10.24", "", "", ""},
    {"2024-03-04-05", "", "", ""},
    {"Order 123/45/6789", "", "", ""},
    {"May 2024", "", "", ""},
    {"Tuesday", "", "", ""},
    {"Marketing 5", "", "", ""},
    {"Total 5 Decimal", "", "", ""},
};
// clang-format on

// Each match as "date matched-text", left to right; `orders` adds "/D" or "/M" when only that order reads it.
QStringList found(const QString &text, Order order, bool orders = false)
{
    QStringList out;
    for (const DateDetector::Match &m : DateDetector::find(text, order, today))
        out.append(m.date.toString(Qt::ISODate) + ' ' + text.mid(m.range.start, m.range.length) +
                   (orders && m.onlyOrder ? (*m.onlyOrder == Order::DayFirst ? "/D" : "/M") : ""));
    return out;
}

// Each form resolves to its date in both orders (or to none), and the match covers exactly the date.
TEST(DateDetector, FormsResolveInBothOrders)
{
    for (const auto &form : forms) {
        const QString text = QString::fromUtf8(form.text);
        const QString matched = *form.matched ? QString::fromUtf8(form.matched) : text;
        for (const auto &[order, date] :
             {std::pair{Order::DayFirst, form.dayFirst}, std::pair{Order::MonthFirst, form.monthFirst}}) {
            const QStringList expected{QString::fromLatin1(date) + ' ' + matched};
            EXPECT_EQ(found(text, order), *date ? expected : QStringList()) << form.text;
        }
    }
}

// Several dates in one text come back left to right with their own ranges and forced orders; a range
// of two dates joined by another separator gives both.
TEST(DateDetector, SeveralDatesAndForcedOrder)
{
    EXPECT_EQ(found("Period 01/03/2024 - 31/03/2024, paid 2 Apr 2024", Order::MonthFirst, true),
              (QStringList{"2024-01-03 01/03/2024", "2024-03-31 31/03/2024/D", "2024-04-02 2 Apr 2024"}));
    EXPECT_EQ(found("01.05.14-31.05.14", Order::DayFirst, true),
              (QStringList{"2014-05-01 01.05.14", "2014-05-31 31.05.14/D"}));
}

// US English writes the month first; British and year-first locales read day first.
TEST(DateDetector, OrderForLocale)
{
    EXPECT_EQ(DateDetector::orderFor(QLocale(QLocale::English, QLocale::UnitedStates)), Order::MonthFirst);
    EXPECT_EQ(DateDetector::orderFor(QLocale(QLocale::English, QLocale::UnitedKingdom)), Order::DayFirst);
    EXPECT_EQ(DateDetector::orderFor(QLocale(QLocale::Japanese, QLocale::Japan)), Order::DayFirst);
}

} // namespace
