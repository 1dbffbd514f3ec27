#pragma once

#include "Table.h"

#include <QString>

namespace Exporter {

/// Comma-separated text of `table`: a byte-order mark, the header row and the data rows, each row
/// ended by CR LF. A cell is quoted (its double quotes doubled) when one of its user-perceived
/// characters is a comma, a double quote, a lone LF or a lone CR; a CR LF pair alone does not
/// quote. A text cell beginning with "=", "+", "-", "@", a tab or a CR (one a spreadsheet would take for a
/// formula) is written with a leading apostrophe; a number in a numeric column stays as it is.
/// Write it as UTF-8.
QString csv(const Table &table);

/// Tab-separated text of `table` for the clipboard: tab, CR and LF in cells each become a space,
/// cells are joined by tabs, rows by LF, with a final LF. Formula-like text cells get the leading
/// apostrophe as in `csv`. No quoting, no byte-order mark.
QString tsv(const Table &table);

} // namespace Exporter
