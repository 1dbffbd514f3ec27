#pragma once

#include "Table.h"

#include "model/TabrixError.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace Exporter {

/// One worksheet of a workbook: its tab name and its table.
struct Sheet {
    QString name;
    Table table;
};

/// The two sheets of the Excel export, whatever the current layout: "Documents" (per-document
/// table with custom field columns) and "Line items" (per-line-item table).
QList<Sheet> workbookSheets(const QList<DocRecord> &docs, const QList<CustomFieldDef> &defs);

/// Column letters of zero-based column `index` (0 → "A", 26 → "AA"); "" for a negative index.
QString colName(int index);

/// `text` made safe for XML content and attribute values: & < > and " become entities, the
/// apostrophe stays, control characters below U+0020 other than tab, LF and CR are dropped, and so are
/// U+FFFE, U+FFFF and unpaired surrogates (none is allowed in XML).
QString xmlEscape(const QString &text);

/// The worksheet part of `table`: frozen bold header row, all columns 20 wide, inline strings, and
/// number cells for numeric columns whose text is an amount. UTF-8 XML without line breaks.
QByteArray sheetXML(const Table &table);

/// The whole .xlsx package of `sheets`, in their order, zipped in memory. Fails only when the
/// archiver does, with "zip failed (" + libzip error code + ") " + its description.
Expected<QByteArray> xlsx(const QList<Sheet> &sheets);

} // namespace Exporter
