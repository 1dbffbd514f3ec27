#pragma once

#include "model/DocRecord.h"
#include "support/TestSupport.h"

#include <QProcess>
#include <gtest/gtest.h>

/// Ids of two custom definitions, the second spelt in lower case.
inline const QUuid poId("{11111111-2222-4333-8444-555555555555}");
inline const QUuid refId("{aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeeee}");

/// A document at `path` with the given (key, value) fields, labelled by key, and line items.
inline DocRecord makeDoc(const QString &path, const QList<QPair<QString, QString>> &values,
                         const QList<LineItem> &items = {})
{
    DocRecord doc{path, {}, items};
    for (const auto &[key, value] : values) {
        doc.fields.append(emptyField(key, key));
        doc.fields.last().value = value;
    }
    return doc;
}

inline LineItem makeItem(const QString &description, const QString &quantity, const QString &unitPrice,
                         const QString &amount)
{
    return {QUuid::createUuid(), description, quantity, unitPrice, amount, 0.0, false, std::nullopt};
}

/// Runs `script` with python3, `input` on its standard input; what it printed (a failure's traceback
/// included), or a null array when python3 cannot be started.
inline QByteArray runPython(const QString &script, const QByteArray &input)
{
    QProcess python;
    python.setProcessChannelMode(QProcess::MergedChannels);
    python.start(QStringLiteral("python3"), {QStringLiteral("-c"), script});
    if (!python.waitForStarted())
        return {};
    python.write(input);
    python.closeWriteChannel();
    python.waitForFinished(30000);
    const QByteArray out = python.readAll();
    return out.isNull() ? QByteArray("") : out;
}
