#pragma once

#include "model/Field.h"
#include "model/Row.h"
#include "model/RuleSet.h"

namespace Extractor {

/// The document's currency as an ISO 4217 code: the most frequent explicit code, else the most
/// frequent symbol (€, £, ¥, $ in that order of precedence).
Field findCurrency(const QList<Row> &rows, RuleSet rules = RuleSet::Core);

} // namespace Extractor
