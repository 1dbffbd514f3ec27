#pragma once

#include "model/CustomFieldDef.h"
#include "model/Field.h"
#include "model/LineItem.h"
#include "model/Row.h"
#include "model/RuleSet.h"

namespace Extractor {

struct Result {
    QList<Field>
        fields; ///< vendor, number, date, dueDate, currency, subtotal, tax, total, then custom fields
    QList<LineItem> items;
    QList<Row> rows;
    /// The custom definition whose pattern spent the document's matching budget (its field and the
    /// regular-expression fields after it are empty); at most one.
    QList<QUuid> slowPatterns;
};

/// Runs the whole rule-based extraction on a document's lines with the base rules (Core) or with our
/// extensions as well (Full). Pure and thread-safe; never fails.
Result extract(const QList<TextLine> &lines, const QList<CustomFieldDef> &custom, RuleSet rules);

} // namespace Extractor
