#pragma once

#include "Table.h"

#include "model/TabrixError.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace Exporter {

/// What spreadsheet programs accept, and refuse or cut a file beyond: characters in a cell (UTF-16 code
/// units) and rows in a sheet, the header row included.
constexpr qsizetype maxCellChars = 32767;
constexpr qsizetype maxSheetRows = 1048576;

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
/// number cells for numeric columns whose text is an amount. UTF-8 XML without line breaks. A cell longer
/// than maxCellChars is cut to that length (never inside a surrogate pair) and counted in `cutCells`.
QByteArray sheetXML(const Table &table, qsizetype *cutCells = nullptr);

/// The whole .xlsx package of `sheets`, in their order, zipped in memory; `cutCells` counts the cells cut
/// to maxCellChars. Fails when a sheet would have more than maxSheetRows rows (naming it and its count),
/// and when the archiver does, with "zip failed (" + libzip error code + ") " + its description.
Expected<QByteArray> xlsx(const QList<Sheet> &sheets, qsizetype *cutCells = nullptr);

} // namespace Exporter
