#pragma once

#include "TextLine.h"

#include <QString>
#include <optional>

/// One extracted (or user-entered) value of a document.
struct Field {
    QString key;   ///< "vendor", "number", …, or a custom definition's upper-case UUID
    QString label; ///< caption and export column heading
    QString value; ///< empty when nothing was found
    double confidence = 0.0;
    bool edited = false;
    std::optional<PageBox> box; ///< absent when nothing was found or the value was typed
    bool isCustom = false;
    QString source; ///< empty for built-in fields; "kw|pattern" or "re|pattern" for custom ones

    bool operator==(const Field &) const = default;
};

/// A field that found nothing: empty value, confidence 0, no box.
inline Field emptyField(const QString &key, const QString &label)
{
    Field field;
    field.key = key;
    field.label = label;
    return field;
}
