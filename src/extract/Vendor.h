#pragma once

#include "RuleFeatures.h"
#include "model/Field.h"
#include "model/TextLine.h"

namespace Extractor {

/// The seller's name from the first page's raw lines: an explicit label, else the most name-like
/// short line near the top.
Field findVendor(const QList<TextLine> &lines, const RuleFeatures &features = RuleSet::Core);

} // namespace Extractor
