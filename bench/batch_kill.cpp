// Kills a process writing a batch with SIGKILL at random moments, then checks that the batch opens
// without being set aside and holds every change the writer had reported committed.
//
//   batch_kill [--kills N] [--file PATH]     N kills (default 200) of a writer on PATH (default: a temp file)
//
// The writer (this program with --child) adds a document per step and edits the first one to the step's
// number, one transaction each, and prints the step after each commit. Exit status 0 when every reopen
// held what was committed; 1 with the failures on standard error otherwise.
#include "store/BatchFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>
#include <cstdio>

namespace {

StoredDoc docAt(int step)
{
    StoredDoc doc;
    doc.id = QUuid::createUuid();
    doc.path = QStringLiteral("/docs/%1.pdf").arg(step);
    doc.status = DocStatus::Ready;
    Field number = emptyField(QStringLiteral("number"), QStringLiteral("Number"));
    number.value = QString::number(step);
    doc.fields = {number};
    doc.rows = {Row(0, {TextLine{QStringLiteral("Invoice %1").arg(step), QRectF(0.1, 0.1, 0.3, 0.02), 0}})};
    return doc;
}

int child(const QString &path)
{
    auto opened = BatchFile::open(path);
    if (auto *error = std::get_if<TabrixError>(&opened)) {
        std::fprintf(stderr, "%s\n", qPrintable(error->message));
        return 1;
    }
    auto &[file, docs, notice] = std::get<BatchFile::Opened>(opened);
    StoredDoc first = docs.isEmpty() ? docAt(0) : docs.first();
    for (int step = int(docs.size());; ++step) {
        if (step > 0) {
            if (file->save(docAt(step), step))
                return 1;
        }
        first.fields[0].value = QString::number(step);
        if (file->save(first, 0))
            return 1;
        std::printf("%d\n", step);
        std::fflush(stdout);
    }
}

/// The last whole number the writer printed, or -1.
int lastCommitted(const QByteArray &out)
{
    const QList<QByteArray> lines = out.split('\n');
    for (qsizetype i = lines.size() - 1; i >= 0; --i) {
        bool ok = false;
        // A line without its newline may have been cut short: only lines followed by one count.
        const int n = lines[i].toInt(&ok);
        if (ok && i < lines.size() - 1)
            return n;
    }
    return -1;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() == 3 && args[1] == QLatin1String("--child"))
        return child(args[2]);

    int kills = 200;
    QTemporaryDir temp;
    QString path = temp.filePath(QStringLiteral("kill.tabrix"));
    for (qsizetype i = 1; i + 1 < args.size(); i += 2) {
        if (args[i] == QLatin1String("--kills"))
            kills = args[i + 1].toInt();
        else if (args[i] == QLatin1String("--file"))
            path = args[i + 1];
    }

    int failures = 0;
    int committed = -1;
    for (int k = 0; k < kills; ++k) {
        QProcess writer;
        writer.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--child"), path});
        if (!writer.waitForStarted()) {
            std::fprintf(stderr, "could not start the writer\n");
            return 1;
        }
        QThread::msleep(QRandomGenerator::global()->bounded(5, 80));
        writer.kill(); // SIGKILL
        writer.waitForFinished();
        committed = std::max(committed, lastCommitted(writer.readAllStandardOutput()));

        auto opened = BatchFile::open(path);
        const auto *ok = std::get_if<BatchFile::Opened>(&opened);
        if (!ok || !ok->notice.isEmpty()) {
            std::fprintf(stderr, "kill %d: the batch did not open: %s\n", k,
                         ok ? qPrintable(ok->notice) : qPrintable(std::get<TabrixError>(opened).message));
            return 1;
        }
        // Every committed step is there; at most the one in flight is beyond it.
        const qsizetype count = ok->docs.size();
        const int first = count > 0 ? ok->docs.first().fields[0].value.toInt() : -1;
        if (count < committed + 1 || first < committed) {
            std::fprintf(stderr, "kill %d: committed %d, found %lld documents, first edited to %d\n", k,
                         committed, static_cast<long long>(count), first);
            ++failures;
        }
        committed = std::max(committed, first);
    }
    std::printf("%d kills, %d steps committed, %d failures\n", kills, committed + 1, failures);
    return failures == 0 ? 0 : 1;
}
