#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

// Runs the built tabrix-cli as a separate process, as scripts and external tests do.
struct CliRun {
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

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

/// tabrix-cli --lines - on `input`, with the base rules unless `rules` says otherwise.
inline CliRun runLines(const QByteArray &input, const QString &locale = QStringLiteral("C"),
                       const QString &rules = QStringLiteral("core"))
{
    return runCli({QStringLiteral("--rules"), rules, QStringLiteral("--lines"), QStringLiteral("-")}, input,
                  locale);
}

/// One page-0 input line: {"text", "rect": [x, y, w, h]}.
inline QJsonObject line(const QString &text, double x, double y, double w = 0.3, double h = 0.015)
{
    return QJsonObject{{QStringLiteral("text"), text}, {QStringLiteral("rect"), QJsonArray{x, y, w, h}}};
}

/// The --lines output's fields by key.
inline QJsonObject fieldsByKey(const QByteArray &out)
{
    QJsonObject byKey;
    for (const QJsonValue &f :
         QJsonDocument::fromJson(out).object().value(QStringLiteral("fields")).toArray())
        byKey.insert(f[QStringLiteral("key")].toString(), f);
    return byKey;
}
