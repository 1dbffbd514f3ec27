#pragma once

#include <QString>
#include <QUuid>

/// A user-defined field: a keyword (the text after it is the value) or a regular expression.
struct CustomFieldDef {
    QUuid id = QUuid::createUuid();
    QString name;
    QString pattern;
    bool isRegex = false;

    bool operator==(const CustomFieldDef &) const = default;
};

/// The canonical text of an id: upper-case hexadecimal, 8-4-4-4-12, no braces.
inline QString uuidText(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}
