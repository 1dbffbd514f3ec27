#pragma once

#include "model/CustomFieldDef.h"
#include "model/DocRecord.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>

namespace Exporter {

/// The JSON export of `docs` (in their order): an array of one object per document with its file
/// name, absolute path, standard fields as strings, subtotal/tax/total as numbers (null when the text
/// holds no amount), custom field values keyed by definition name (or upper-case id when unnamed),
/// line items with numeric quantity/unitPrice/amount, and a confidence per field label (1 for a
/// field the user edited, else rounded to two decimals). Written in our JSON text form with plain
/// slashes. Never fails.
QByteArray json(const QList<DocRecord> &docs, const QList<CustomFieldDef> &defs);

/// One element of that array: the object written for `doc`. Never fails.
QJsonObject jsonElement(const DocRecord &doc, const QList<CustomFieldDef> &defs);

} // namespace Exporter
