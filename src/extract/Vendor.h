#pragma once

#include "model/Field.h"
#include "model/RuleSet.h"
#include "model/TextLine.h"

namespace Extractor {

/// The seller's name from the first page's raw lines: an explicit label, else the most name-like
/// short line near the top.
Field findVendor(const QList<TextLine> &lines, RuleSet rules = RuleSet::Core);

} // namespace Extractor
