#pragma once

#include "Amounts.h"
#include "model/Field.h"

namespace Extractor {

/// The subtotal: the first subtotal-labelled row ("Subtotal", "Net amount", "Total before tax") that
/// yields an amount, its own or the one below it; with RuleFeatures::columnLabels the amount under a
/// column label, with RuleFeatures::pairedSubtotal the amount after the label in a row of pairs.
Field findSubtotal(const Scan &scan);

} // namespace Extractor
