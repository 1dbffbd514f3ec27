#pragma once

#include "CustomFieldDef.h"

#include <QByteArray>
#include <QJsonArray>
#include <QList>
#include <optional>

/// Reading custom field definition lists in their JSON form: an array of objects with exactly the
/// members "id" (canonical UUID text), "isRegex" (bool), "name" and "pattern" (strings). Strict: any
/// missing member, wrong type or malformed UUID rejects the whole list.
namespace CustomFieldCodec {

std::optional<QList<CustomFieldDef>> decode(const QJsonArray &array);
std::optional<QList<CustomFieldDef>> decode(const QByteArray &json);

} // namespace CustomFieldCodec
