#pragma once

#include "extract/Extractor.h"
#include "model/CustomFieldDef.h"
#include "model/TabrixError.h"
#include "model/TextLine.h"

#include <QByteArray>
#include <QJsonArray>
#include <optional>

/// The plain-records seam of tabrix-cli: text lines in, extraction results out, as JSON.
namespace LinesJson {

struct Input {
    QList<TextLine> lines;
    QList<CustomFieldDef> customFields;
};

/// Reads {"lines": [...], "customFields": [...]} or a bare array of lines. Each line needs "text"
/// (a string, possibly empty) and "rect" ([x, y, w, h] numbers); "page" defaults to 0.
Expected<Input> parseInput(const QByteArray &json);

/// {"lines": [...]}: the form parseInput reads, numbers in shortest round-trip form.
QByteArray writeLines(const QList<TextLine> &lines);

/// The records in the result's form: [{"key", "label", "value", "confidence", "edited", "isCustom",
/// "source", "box"}, …] and [{"description", "quantity", "unitPrice", "amount", "confidence", "box"}, …].
QJsonArray fieldsJson(const QList<Field> &fields);
QJsonArray itemsJson(const QList<LineItem> &items);

/// Reads those arrays back exactly (numbers written in shortest form come back as the same doubles);
/// nothing when an element lacks its texts or confidence.
std::optional<QList<Field>> parseFields(const QJsonArray &array);
std::optional<QList<LineItem>> parseItems(const QJsonArray &array);

/// {"fields": [...], "items": [...], "rows": [...]}.
QByteArray writeResult(const Extractor::Result &result);

} // namespace LinesJson
