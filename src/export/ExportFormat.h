#pragma once

#include "Table.h"

#include "model/CustomFieldDef.h"
#include "model/DocRecord.h"
#include "model/TabrixError.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

/// The file formats documents are exported in.
enum class ExportFormat { csv, tsv, json, xlsx };

/// The format named `name` on the command line ("csv", "tsv", "json" or "xlsx"), or nothing.
std::optional<ExportFormat> exportFormatNamed(const QString &name);

/// The layout named `name` on the command line ("document" or "line-item"), or nothing.
std::optional<RowLayout> rowLayoutNamed(const QString &name);

namespace Exporter {

/// `docs` in `format`, as written to a file: CSV and TSV hold `layout`'s table, JSON and the workbook
/// hold every layout. Fails only when the workbook cannot be written (too many rows for a sheet, or
/// zipping failed). What the workbook had to cut to fit is added to `notes`, one sentence each.
Expected<QByteArray> exportBytes(ExportFormat format, RowLayout layout, const QList<DocRecord> &docs,
                                 const QList<CustomFieldDef> &defs, QStringList *notes = nullptr);

/// `layout`'s table of `docs`.
Table table(RowLayout layout, const QList<DocRecord> &docs, const QList<CustomFieldDef> &defs);

} // namespace Exporter
