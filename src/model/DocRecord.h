#pragma once

#include "Field.h"
#include "LineItem.h"

#include <QList>
#include <QString>

/// What an export writes of one document: its file, fields and line items. A plain value, so the
/// command-line tool can export what it read without building the window's document objects.
struct DocRecord {
    /// Absolute path of the file the document was read from.
    QString path;
    QList<Field> fields;
    QList<LineItem> items;

    QString fileName() const;
    /// The value of the first field keyed exactly `key`, or "" when there is none.
    QString value(const QString &key) const;
};

/// The value of the first of `fields` keyed exactly `key`, or "" when there is none.
QString fieldValue(const QList<Field> &fields, const QString &key);
