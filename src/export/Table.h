#pragma once

#include "model/CustomFieldDef.h"
#include "model/DocRecord.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

/// What every tabular export (CSV, TSV, both workbook sheets) is written from. Cells are text as
/// stored in the documents; nothing is parsed or reformatted when a table is built.
struct Table {
    QStringList headers;
    QList<QStringList> rows; ///< every row built here has exactly as many cells as `headers`
    QSet<int> numeric;       ///< zero-based indices of the columns holding amounts or counts

    bool operator==(const Table &) const = default;
};

/// The two table shapes; the store starts every run with `perDocument`.
enum class RowLayout { perDocument, perLineItem };

/// The layouts in the order the layout picker offers them.
QList<RowLayout> allRowLayouts();

/// The text shown for `layout`: "One row per document" or "One row per line item".
QString rowLayoutCaption(RowLayout layout);

namespace Exporter {

/// One row per document, in the order of `docs`: the standard fields, the line-item count and one
/// column per definition of `defs` (headed by its name, or "Custom field" when the name is empty).
/// Subtotal, Tax, Total and the count are the numeric columns; custom columns never are.
Table documents(const QList<DocRecord> &docs, const QList<CustomFieldDef> &defs);

/// One row per line item (a document without items still gets one row, with its total), in the
/// order of `docs` and of each document's items. The document total repeats on each of its rows.
Table lineItems(const QList<DocRecord> &docs);

} // namespace Exporter
