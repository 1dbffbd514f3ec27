#pragma once

#include "Amounts.h"
#include "model/LineItem.h"

namespace Extractor {

/// The item table: rows below an optional header up to the first summary row, each parsed with
/// parseItem; wrapped description lines (with a header) are joined onto the item above.
QList<LineItem> findLineItems(const Scan &scan);

/// One item row: description, quantity, unit price and amount from the row's amounts (left to right).
/// Nothing when the row has no amount or no plausible description.
/// With RuleFeatures::leadingQuantity also a quantity printed before the description ("1,00  Beratung
/// 120,00").
std::optional<LineItem> parseItem(const Row &row, QList<Amount> amounts, bool hasHeader,
                                  const RuleFeatures &features = RuleSet::Core);

/// Whether a row ends the item table: a total, tax, payment or closing line ("Subtotal", "Thank you");
/// the vocabularies add their summary words, and RuleFeatures::subtotalEndsTable any subtotal label.
bool isSummaryRow(const Row &row, const RuleFeatures &features);

} // namespace Extractor
