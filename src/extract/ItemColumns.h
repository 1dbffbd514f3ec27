#pragma once

#include "Amounts.h"
#include "model/LineItem.h"

namespace Extractor {

/// Full rules: the item table read by its columns. The header is one or more rows of column labels
/// printed as separate lines, among them an amount column and two more of description, quantity and
/// unit price; labels stacked over each other are one column, and every column reaches halfway to its
/// neighbours. Each following row with an amount alone in the amount column is an item: its quantity
/// and unit price come from their own columns only, its description from the description column of its
/// row and of the rows below it up to the next item (wrapped text). The table ends at a summary row or
/// a row of other column labels, and is followed onto later pages (a repeated header there replaces
/// the columns). Where the table has a quantity column, rows without a quantity (allowances, charges)
/// are not items. Quantity × unit price (less a discount printed in the row) must make the amount, or
/// the item is shown for review. Nothing when no such header is found.
std::optional<QList<LineItem>> findItemsByColumns(const Scan &scan);

} // namespace Extractor
