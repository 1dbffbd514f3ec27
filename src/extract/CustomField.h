#pragma once

#include "model/CustomFieldDef.h"
#include "model/Field.h"
#include "model/Row.h"

namespace Extractor {

/// The value of one user-defined field: the text after a keyword, or a regular expression's first group
/// (or whole match). An empty or invalid pattern gives an empty field, never an error. A pattern's matching
/// is bounded (Regex::Budget) on each document: past the bound the field is left empty and `abandoned`,
/// when given, is set.
Field extractCustom(const CustomFieldDef &def, const QList<Row> &rows, bool *abandoned = nullptr);

/// The source tag of the field a definition produces: "re|" or "kw|" and the pattern as stored, by which
/// a document's custom field is known to be current.
QString customSource(const CustomFieldDef &def);

} // namespace Extractor
