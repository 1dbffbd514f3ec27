#pragma once

#include "Amounts.h"
#include "model/Field.h"

namespace Extractor {

/// The tax amount: the last tax-total row, a single tax row, or the sum of several tax rows.
/// Amounts are taken from the label's own row only.
/// `implied` (RuleFeatures::impliedTax) is the tax that a labelled subtotal and total imply (total −
/// subtotal): where the rows' usual reading disagrees with it but one tax row agrees (a rate table and a
/// summary both list the tax), the last such row wins at 0.85.
Field findTax(const Scan &scan, std::optional<double> implied = std::nullopt);

} // namespace Extractor
