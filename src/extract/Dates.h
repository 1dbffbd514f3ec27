#pragma once

#include "RuleFeatures.h"
#include "model/Field.h"
#include "model/Row.h"

#include <QDate>
#include <QLocale>
#include <utility>

namespace Extractor {

/// The issue date and the due date ("yyyy-MM-dd"), each classified by the nearest date label to its
/// left or by a row of labels directly above; a missing due date comes from net terms or "due on
/// receipt". Ambiguous numeric dates follow the user's locale (Money::userLocale) unless the document's
/// other numeric dates only read the other way; dates without a year take the current year.
std::pair<Field, Field> findDates(const QList<Row> &rows, const RuleFeatures &features = RuleSet::Core);

/// The same with an explicit locale, which gives the default order of ambiguous numeric dates, and an
/// explicit `today`, whose year completes dates written without one.
std::pair<Field, Field> findDates(const QList<Row> &rows, const QLocale &locale, const QDate &today,
                                  const RuleFeatures &features = RuleSet::Core);

/// The field form of a date: "yyyy-MM-dd" in ASCII digits, whatever the user's locale.
QString formatDate(const QDate &date);

} // namespace Extractor
