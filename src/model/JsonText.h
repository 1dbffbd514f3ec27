#pragma once

#include <QByteArray>
#include <QJsonValue>
#include <QString>

/// Our JSON text form, shared by the exports and the custom-fields files: pretty-printed with a
/// two-space indent, " : " between key and value, object keys sorted by UTF-16 code units at every
/// level, empty containers as `[]` and `{}`, non-ASCII text as plain UTF-8, no trailing newline.
/// Numbers are written in the shortest text that reads back to the same double, whatever the C
/// locale says ("1234.5", "100", "0.88"); a non-finite number is written as null.
namespace JsonText {

enum class Slashes {
    Plain,   ///< "/" as is (exports)
    Escaped, ///< "/" as "\/" (custom-fields files)
};

/// The UTF-8 text of `value`. Never fails.
QByteArray write(const QJsonValue &value, Slashes slashes = Slashes::Plain);

/// The same text without line breaks or indent and with ":" between key and value: one line of a
/// JSON Lines stream (the caller adds the newline). Plain slashes. Never fails.
QByteArray writeLine(const QJsonValue &value);

/// The shortest decimal text that reads back as `x` ("100", "0.1", "1e+21"); locale-free.
/// `x` must be finite.
QByteArray shortestNumber(double x);

} // namespace JsonText
