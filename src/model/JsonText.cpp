#include "JsonText.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>
#include <algorithm>
#include <charconv>
#include <cmath>

namespace JsonText {

namespace {

bool utf16Less(const QString &a, const QString &b)
{
    return std::lexicographical_compare(a.utf16(), a.utf16() + a.size(), b.utf16(), b.utf16() + b.size());
}

void writeString(QByteArray &out, const QString &text, Slashes slashes)
{
    static const char hex[] = "0123456789abcdef";
    out += '"';
    for (const char c : text.toUtf8()) {
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '/':
            out += slashes == Slashes::Escaped ? "\\/" : "/";
            break;
        case '\b':
            out += "\\b";
            break;
        case '\f':
            out += "\\f";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (static_cast<unsigned char>(c) < 0x20) {
                out += "\\u00";
                out += hex[(c >> 4) & 0xf];
                out += hex[c & 0xf];
            } else {
                out += c;
            }
        }
    }
    out += '"';
}

/// depth < 0 writes everything on one line.
void newline(QByteArray &out, int depth)
{
    if (depth < 0)
        return;
    out += '\n';
    out.append(2 * depth, ' ');
}

int deeper(int depth)
{
    return depth < 0 ? depth : depth + 1;
}

void writeValue(QByteArray &out, const QJsonValue &value, Slashes slashes, int depth)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        out += value.toBool() ? "true" : "false";
        break;
    case QJsonValue::Double: {
        const double x = value.toDouble();
        out += std::isfinite(x) ? shortestNumber(x) : QByteArray("null");
        break;
    }
    case QJsonValue::String:
        writeString(out, value.toString(), slashes);
        break;
    case QJsonValue::Array: {
        const QJsonArray array = value.toArray();
        if (array.isEmpty()) {
            out += "[]";
            break;
        }
        out += '[';
        for (qsizetype i = 0; i < array.size(); ++i) {
            if (i > 0)
                out += ',';
            newline(out, deeper(depth));
            writeValue(out, array.at(i), slashes, deeper(depth));
        }
        newline(out, depth);
        out += ']';
        break;
    }
    case QJsonValue::Object: {
        const QJsonObject object = value.toObject();
        if (object.isEmpty()) {
            out += "{}";
            break;
        }
        QStringList keys = object.keys();
        std::sort(keys.begin(), keys.end(), utf16Less);
        out += '{';
        for (qsizetype i = 0; i < keys.size(); ++i) {
            if (i > 0)
                out += ',';
            newline(out, deeper(depth));
            writeString(out, keys.at(i), slashes);
            out += depth < 0 ? ":" : " : ";
            writeValue(out, object.value(keys.at(i)), slashes, deeper(depth));
        }
        newline(out, depth);
        out += '}';
        break;
    }
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        out += "null";
        break;
    }
}

} // namespace

QByteArray shortestNumber(double x)
{
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, x);
    return QByteArray(buffer, result.ptr - buffer);
}

QByteArray write(const QJsonValue &value, Slashes slashes)
{
    QByteArray out;
    writeValue(out, value, slashes, 0);
    return out;
}

QByteArray writeLine(const QJsonValue &value)
{
    QByteArray out;
    writeValue(out, value, Slashes::Plain, -1);
    return out;
}

} // namespace JsonText
