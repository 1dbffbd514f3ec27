#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>

// Runs the built tabrix-cli as a separate process, as scripts and external tests do.
struct CliRun {
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

inline CliRun runCli(const QStringList &args, const QByteArray &input = {})
{
    QProcess process;
    process.start(QStringLiteral(TABRIX_CLI), args);
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(120000);
    return CliRun{process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                  process.readAllStandardOutput(), process.readAllStandardError()};
}
