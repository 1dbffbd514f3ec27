#pragma once

#include "RuleFeatures.h"
#include "model/Row.h"

#include <QDate>
#include <QList>
#include <QLocale>
#include <QString>
#include <optional>

/// Finds date expressions in free text and resolves them to calendar dates.
///
/// Recognised forms (English month names, any letter case):
/// - numeric with "/", "." or "-" (the same separator twice): year first with four digits (2024-03-04,
///   2024/3/4), or day and month first with a two- or four-digit year (03/04/2024, 4.3.24, 04-03-2024);
/// - month names and abbreviations, with or without a dot, day before or after the month, ordinals,
///   "of", commas and an optional year (15 January 2023, 5th of Mar 2024, 05-Mar-2024, March 5, 2024,
///   Mar 5 2024, Sept. 3rd);
/// - any of the month-name forms after a weekday (Tue, 5 Mar 2024; Tuesday March 5).
///
/// Resolution: a two-digit year is 2000–2069 for 00–69 and 1970–1999 for 70–99; a date without a year
/// takes the year of `today`; a numeric date whose first two parts could both be a month follows the
/// caller's order, while a part above 12 forces the only valid reading; a date that does not exist
/// (31/02/2024, 30 Feb) is no date. Times, amounts, phone numbers and identifiers (10:30, 12.50,
/// +1 555 0100, INV-2024-001, 1.2.3.4) are not dates: numeric parts must stand alone, not inside a longer
/// run of digits, letters and separators.
namespace DateDetector {

/// How a numeric date reads when both of its first two parts could be the month (03/04/2024).
enum class Order { DayFirst, MonthFirst };

/// One date expression found in a text.
struct Match {
    TextRange range; ///< UTF-16 range of the whole expression, weekday included
    QDate date;      ///< always a valid date
    /// For a numeric date with day and month first that exists in one reading only (25/12/2024), that
    /// reading; empty for other forms and when both readings exist.
    std::optional<Order> onlyOrder;
};

/// Every date expression in `text`, left to right and without overlaps (where two forms overlap, the
/// one that starts first wins, then the longer). `today` supplies the year of dates written without one.
/// The full rules also read the vocabularies' month names ("11. Juli 2014", "3 de mayo de 2024",
/// "1er janvier 2024"); with RuleFeatures::dottedDayFirst an ambiguous dotted date (06.08.2018) reads
/// day first whatever `order` says.
QList<Match> find(const QString &text, Order order, const QDate &today,
                  const RuleFeatures &features = RuleSet::Core);

/// The order in which `locale` writes numeric dates: month first where its short date format puts the
/// month before the day and does not start with the year (English, United States), day first otherwise.
Order orderFor(const QLocale &locale);

} // namespace DateDetector
