#pragma once

#include "Amounts.h"
#include "model/LineItem.h"

namespace Extractor {

/// The tax amount: the last tax-total row, a single tax row, or the sum of several tax rows.
/// Amounts are taken from the label's own row only.
Field findTax(const Scan &scan);

/// Cross-checks subtotal, tax and total with each other and with the line items: fills a missing one
/// from the other two and raises the confidence of values whose arithmetic agrees. Changes only the
/// values and confidences of the three fields.
void reconcile(Field &subtotal, Field &tax, Field &total, const QList<LineItem> &items);

} // namespace Extractor
