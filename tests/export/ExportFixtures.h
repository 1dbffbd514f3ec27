#pragma once

#include "model/DocRecord.h"

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QProcess>
#include <QString>

/// A document at `path` with the given (key, value) fields and line items.
inline DocRecord makeDoc(const QString &path, const QList<QPair<QString, QString>> &values,
                         const QList<LineItem> &items = {})
{
    QList<Field> fields;
    for (const auto &[key, value] : values) {
        Field field;
        field.key = key;
        field.label = key;
        field.value = value;
        fields.append(field);
    }
    return {path, fields, items};
}

inline LineItem makeItem(const QString &description, const QString &quantity, const QString &unitPrice,
                         const QString &amount)
{
    LineItem item;
    item.description = description;
    item.quantity = quantity;
    item.unitPrice = unitPrice;
    item.amount = amount;
    return item;
}

/// Runs `script` with python3, `input` on its standard input; its standard output, or a null array
/// when python3 is missing or the script fails (the failure text goes to `error`).
inline QByteArray runPython(const QString &script, const QByteArray &input, QString *error)
{
    QProcess python;
    python.start(QStringLiteral("python3"), {QStringLiteral("-c"), script});
    if (!python.waitForStarted()) {
        *error = QStringLiteral("python3 not found");
        return {};
    }
    python.write(input);
    python.closeWriteChannel();
    python.waitForFinished(30000);
    if (python.exitStatus() != QProcess::NormalExit || python.exitCode() != 0) {
        *error = QString::fromUtf8(python.readAllStandardError());
        return {};
    }
    QByteArray out = python.readAllStandardOutput();
    return out.isNull() ? QByteArray("") : out;
}
