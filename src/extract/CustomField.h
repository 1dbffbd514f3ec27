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

/// A document's fields brought in line with changed definitions, and the patterns still to match.
struct Resync {
    /// The built-in fields as they were, then one custom field per definition in definition order:
    /// a current one kept (relabelled, hand corrections intact), a keyword searched at once, a pattern
    /// as an empty placeholder without source until fillPending() puts its match in.
    QList<Field> fields;
    /// The regular-expression definitions whose placeholders wait; matching them may be slow.
    QList<CustomFieldDef> pending;
};

/// Re-syncs `fields` (a document's, read into `rows`) with `definitions`. Pure and quick: no pattern is
/// matched here, so callers can run the pending ones on another thread.
Resync resync(const QList<Field> &fields, const QList<CustomFieldDef> &definitions, const QList<Row> &rows);

/// Puts extracted fields into the placeholders resync() left (custom, no source) with the same key.
/// Returns false, changing nothing, when no placeholder of `fields` matches one of `extracted`.
bool fillPending(QList<Field> &fields, const QList<Field> &extracted);

/// The fields of `defs` on one document, in their order. Their regular expressions share one matching
/// budget for the whole document, so many slow patterns cannot add up to minutes: once it is spent, the
/// pattern that spent it and every regular expression after it are left empty (keywords still run), and
/// the id of the one that spent it is appended to `slow`, when given.
QList<Field> extractCustomFields(const QList<CustomFieldDef> &defs, const QList<Row> &rows,
                                 QList<QUuid> *slow = nullptr);

/// More regular-expression fields than this share the budget too thinly; the editor warns.
constexpr int manyPatterns = 50;

} // namespace Extractor
