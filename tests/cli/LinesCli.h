#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>

// Runs the built tabrix-cli on a --lines document given on standard input.
namespace LinesCli {

struct Run {
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

/// `locale` goes into LC_ALL (and clears LANG and LC_TIME) so the user's locale is fixed for the run.
inline Run run(const QByteArray &input, const QString &locale = QStringLiteral("C"))
{
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("LC_ALL"), locale);
    env.remove(QStringLiteral("LANG"));
    env.remove(QStringLiteral("LC_TIME"));
    process.setProcessEnvironment(env);
    process.start(QStringLiteral(TABRIX_CLI), {QStringLiteral("--lines"), QStringLiteral("-")});
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(30000);
    return Run{process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
               process.readAllStandardOutput(), process.readAllStandardError()};
}

/// One line of input, one page-0 line per call: {"text", "rect": [x, y, w, h]}.
inline QJsonObject line(const QString &text, double x, double y, double w = 0.3, double h = 0.015)
{
    return QJsonObject{{QStringLiteral("text"), text}, {QStringLiteral("rect"), QJsonArray{x, y, w, h}}};
}

/// The output's fields by key.
inline QJsonObject fieldsByKey(const QByteArray &out)
{
    QJsonObject byKey;
    for (const QJsonValue &f :
         QJsonDocument::fromJson(out).object().value(QStringLiteral("fields")).toArray())
        byKey.insert(f[QStringLiteral("key")].toString(), f);
    return byKey;
}

} // namespace LinesCli
