#pragma once

#include "RuleFeatures.h"
#include "model/Row.h"

#include <optional>

namespace Extractor {

/// One money amount found in a row's text.
struct Amount {
    double value = 0;
    TextRange range; ///< UTF-16 range in Row::text
};

/// The document's rows with each row's amount candidates, computed once and shared by every finder.
struct Scan {
    QList<Row> rows;
    QList<QList<Amount>> amounts; ///< amounts[i] belongs to rows[i], left to right
    QList<bool> headerLike;       ///< headerLike[i]: rows[i] matches two or more table-header patterns
    RuleFeatures features;        ///< the rules the amounts were read with, and every finder follows
};

/// Every amount-pattern match of the text that Money::parse accepts, left to right.
QList<Amount> amountCandidates(const QString &text, const RuleFeatures &features = RuleSet::Core);
Scan scanRows(QList<Row> rows, const RuleFeatures &features = RuleSet::Core);

/// An amount found for a label, and whether it came from the row below the label.
struct NearAmount {
    double value = 0;
    PageBox box;
    bool fromNextRow = false;
};

/// The amount that belongs to the label in row `index`: the rightmost amount of that row, a bare
/// trailing number, or the leftmost amount of the next row on the same page when the label row is short.
std::optional<NearAmount> amountNear(const Scan &scan, qsizetype index);

/// The amount under a label that heads a column ("Total HT" above "100,00", "Netto  USt  Brutto" above
/// three amounts): in the next three rows on the same page, at most four label heights down, the amount
/// whose box lies under `label` (its line widened by half its width on each side), nearest to its centre.
/// Used where a label row holds no amount (RuleFeatures::columnLabels).
std::optional<NearAmount> amountBelow(const Scan &scan, qsizetype index, const TextLine &label);

/// The amount of row `row` whose box lies under `label` (its line widened by half its width on each side),
/// nearest to its centre; nothing when none does.
std::optional<NearAmount> amountUnder(const Scan &scan, qsizetype row, const TextLine &label);

/// Whether row `index` reads as column labels (RuleFeatures::columnLabels) over their amounts: several lines,
/// no amount, not a table header.
bool isColumnLabelRow(const Scan &scan, qsizetype index);

} // namespace Extractor
