#pragma once

#include "Amounts.h"
#include "Total.h"
#include "model/Field.h"
#include "model/LineItem.h"

namespace Extractor {

/// Checks the total (RuleFeatures::totalCheck) against the receipt's own arithmetic. The checks, most trusted
/// first: cash paid minus change given, subtotal plus tax, the line items' sum plus tax (or alone, without a
/// tax). Among the
/// labelled totals (totalCandidates) the one that passes the most trusted check wins, at 0.9 or more;
/// with no labelled total, an amount printed on the page that equals cash minus change is the total.
/// A total that fails every available check drops below 0.7 so that it is shown for review. Leaves
/// `total` alone when no check can be made.
void checkTotal(const Scan &scan, const Field &subtotal, const Field &tax, const QList<LineItem> &items,
                Field &total);
/// The same with the labelled totals already found (totalCandidates of `scan`).
void checkTotal(const Scan &scan, const QList<TotalCandidate> &candidates, const Field &subtotal,
                const Field &tax, const QList<LineItem> &items, Field &total);

} // namespace Extractor
