#pragma once

#include "support/TestSupport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>

// Runs the built tabrix-cli as a separate process, as scripts and external tests do.
struct CliRun {
    int exitCode = -1;
    QByteArray out, err;
};

/// The bundled sample documents' folder, as a user would name it.
inline const QString samples = QStringLiteral(TABRIX_SOURCE_DIR "/samples/documents");

/// `locale` goes into LC_ALL (LANG and LC_TIME cleared) so the user's locale is fixed for the run.
inline CliRun runCli(const QStringList &args, const QByteArray &input = {},
                     const QString &locale = QStringLiteral("C"))
{
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("LC_ALL"), locale);
    env.remove(QStringLiteral("LANG"));
    env.remove(QStringLiteral("LC_TIME"));
    process.setProcessEnvironment(env);
    process.start(QStringLiteral(TABRIX_CLI), args);
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(120000);
    return CliRun{process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                  process.readAllStandardOutput(), process.readAllStandardError()};
}

/// tabrix-cli --lines - on `input`, with the base rules.
inline CliRun runLines(const QByteArray &input, const QString &locale = QStringLiteral("C"))
{
    return runCli({"--rules", "core", "--lines", "-"}, input, locale);
}

/// The --lines output's fields by key.
inline QJsonObject fieldsByKey(const QByteArray &out)
{
    QJsonObject byKey;
    for (const QJsonValue &f : QJsonDocument::fromJson(out)[QStringLiteral("fields")].toArray())
        byKey.insert(f[QStringLiteral("key")].toString(), f);
    return byKey;
}
