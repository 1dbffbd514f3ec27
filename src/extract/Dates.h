#pragma once

#include "model/Field.h"
#include "model/Row.h"

#include <utility>

namespace Extractor {

/// The issue date and the due date ("yyyy-MM-dd"), classified by the nearest label.
std::pair<Field, Field> findDates(const QList<Row> &rows);

} // namespace Extractor
