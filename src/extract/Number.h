#pragma once

#include "model/Field.h"
#include "model/Row.h"
#include "model/RuleSet.h"

namespace Extractor {

/// The invoice, receipt or order number: the most confident of four row rules.
Field findNumber(const QList<Row> &rows, RuleSet rules = RuleSet::Core);

} // namespace Extractor
