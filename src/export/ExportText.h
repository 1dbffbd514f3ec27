#pragma once

#include "Table.h"

#include <QString>

/// The texts of the exports that reach the user (through the store's alert) and the file names
/// proposed in save panels.
namespace ExportText {

/// Shown instead of any export or copy when no document is approved.
QString nothingApproved();

/// After the tab-separated copy of `documents` approved documents (counted even in the line-item
/// layout): "Copied 3 approved documents as tab-separated text. Paste it into a spreadsheet."
QString copied(qsizetype documents);

/// A failed write: "Export failed: " + the error's description.
QString exportFailed(const QString &description);

/// "tabrix-documents.csv" or "tabrix-line-items.csv", by layout.
QString csvFileName(RowLayout layout);
/// "tabrix-export.json".
QString jsonFileName();
/// "tabrix-export.xlsx".
QString xlsxFileName();

} // namespace ExportText
