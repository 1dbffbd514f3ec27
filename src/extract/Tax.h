#pragma once

#include "Amounts.h"
#include "model/LineItem.h"

namespace Extractor {

/// The tax amount: the last tax-total row, a single tax row, or the sum of several tax rows.
/// Amounts are taken from the label's own row only.
/// `implied`, given by the full rules, is the tax that a labelled subtotal and total imply (total −
/// subtotal): where the rows' usual reading disagrees with it but one tax row agrees (a rate table and a
/// summary both list the tax), the last such row wins at 0.85.
Field findTax(const Scan &scan, std::optional<double> implied = std::nullopt);

/// Cross-checks subtotal, tax and total with each other and with the line items: fills a missing one
/// from the other two and raises the confidence of values whose arithmetic agrees. Changes only the
/// values and confidences of the three fields.
void reconcile(Field &subtotal, Field &tax, Field &total, const QList<LineItem> &items);

} // namespace Extractor
