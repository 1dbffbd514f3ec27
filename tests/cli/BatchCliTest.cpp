#include "CliRunner.h"
#include "support/TestSupport.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdio>
#include <gtest/gtest.h>

namespace {

const QString samples = QStringLiteral(TABRIX_SOURCE_DIR "/samples/documents");

// Folders expand as in the app, a file named twice is read once, and results follow queue order
// whatever the number of jobs.
TEST(BatchCli, ExportsInQueueOrderAndReadsEachFileOnce)
{
    const QString pdf = samples + "/bluepeak-invoice.pdf";
    const CliRun one = runCli({"--jobs", "1", "--quiet", samples, pdf, samples + "/./bluepeak-invoice.pdf"});
    ASSERT_EQ(one.exitCode, 0) << one.err.toStdString();
    EXPECT_TRUE(one.err.isEmpty());
    const QJsonArray docs = QJsonDocument::fromJson(one.out).array();
    ASSERT_EQ(docs.size(), 5);
    EXPECT_EQ(docs[0].toObject().value("file").toString(), QStringLiteral("atelier-invoice-scan.png"));
    EXPECT_EQ(docs[1].toObject().value("path").toString(), QDir::cleanPath(pdf));
    EXPECT_EQ(docs[1].toObject().value("total").toDouble(), 176.31);
    EXPECT_EQ(docs[1].toObject().value("number").toString(), QStringLiteral("BP-2024-0387"));

    const CliRun two = runCli({"--jobs", "2", "--quiet", samples});
    EXPECT_EQ(two.out, one.out);
}

// A failed document is reported (even with --quiet) and left out; the rest is exported with status 2.
TEST(BatchCli, FailedDocumentsAreReportedAndLeftOut)
{
    QTemporaryDir dir;
    writeFile(dir.filePath("broken.pdf"), "not a pdf");
    QFile::copy(samples + "/bluepeak-invoice.pdf", dir.filePath("good.pdf"));
    const CliRun run = runCli({"--quiet", "--format", "csv", dir.path()});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.err.contains(dir.filePath("broken.pdf").toUtf8() + ": Failed: Can't open PDF"));
    EXPECT_TRUE(run.out.startsWith("\xEF\xBB\xBF"
                                   "File,Vendor,"));
    EXPECT_EQ(run.out.count("\r\n"), 2); // header and the good document

    const CliRun allFailed = runCli({"--quiet", dir.filePath("broken.pdf")});
    EXPECT_EQ(allFailed.exitCode, 2);
    EXPECT_EQ(allFailed.out.trimmed(), QByteArray("[]"));
}

// Usage errors, nothing supported and bad definition files exit 1 with the app's messages.
TEST(BatchCli, RefusesBadInvocations)
{
    QTemporaryDir dir;
    writeFile(dir.filePath("notes.txt"), "hello");
    CliRun run = runCli({dir.path()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(
        run.err.contains("No supported files found. Tabrix reads PDF, PNG, JPEG, HEIC and TIFF files."));

    writeFile(dir.filePath("defs.json"), R"([{"id": "x", "isRegex": false, "name": "", "pattern": ""}])");
    run = runCli({"--custom-fields", dir.filePath("defs.json"), samples});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.err.contains("That file isn't a Tabrix custom-fields JSON file."));
    run = runCli({"--custom-fields", dir.filePath("none.json"), samples});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err.trimmed(), dir.filePath("none.json").toUtf8() + ": No such file or directory");

    for (const QStringList &args :
         {QStringList{"--format", "pdf", samples}, QStringList{"--format", "xlsx", samples},
          QStringList{"--jobs", "0", samples}, QStringList{"--bogus"}, QStringList{}}) {
        run = runCli(args);
        EXPECT_EQ(run.exitCode, 1) << args.join(' ').toStdString();
        EXPECT_TRUE(run.out.isEmpty());
    }
}

// Custom definitions from a file become columns; xlsx goes to the named file.
TEST(BatchCli, CustomFieldsAndWorkbookOutput)
{
    QTemporaryDir dir;
    writeFile(
        dir.filePath("defs.json"),
        R"json([{"id": "6F1E2D3C-4B5A-4978-8695-A4B3C2D1E0F9", "isRegex": true, "name": "Terms", "pattern": "Terms:\\s*(.+)"}])json");
    const QString pdf = samples + "/northwind-invoice.pdf";
    CliRun run = runCli({"--quiet", "--custom-fields", dir.filePath("defs.json"), "--format", "tsv", pdf});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    const QList<QByteArray> lines = run.out.split('\n');
    EXPECT_TRUE(lines[0].endsWith("\tTerms"));
    EXPECT_TRUE(lines[1].contains("\tNet 30."));

    run = runCli({"--quiet", "--format", "xlsx", "--output", dir.filePath("out.xlsx"), pdf});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QFile xlsx(dir.filePath("out.xlsx"));
    ASSERT_TRUE(xlsx.open(QIODevice::ReadOnly));
    EXPECT_TRUE(xlsx.read(2) == "PK");

    run = runCli({"--quiet", "--output", dir.filePath("no/such/folder/out.json"), pdf});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.err.contains("Export failed: "));
}

// Every input that cannot be read is a failure of its own, named on one line with its cause, while the
// rest of the batch is read: a missing path, a named pipe (which must not block), a name with a newline,
// and a name that is not UTF-8 (read, and shown with the byte escaped).
TEST(BatchCli, UnreadableInputsFailOneByOne)
{
    QTemporaryDir dir;
    const QByteArray folder = QFile::encodeName(dir.filePath("in"));
    QDir().mkpath(dir.filePath("in"));
    QFile pdf(samples + "/bluepeak-invoice.pdf");
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    const QByteArray bytes = pdf.readAll();
    for (const QByteArray &name : {QByteArray("invoice-\xff.pdf"), QByteArray("bad\xfe.pdf")}) {
        std::FILE *file = std::fopen(folder + "/" + name, "wb");
        ASSERT_TRUE(file);
        if (name.startsWith("invoice"))
            std::fwrite(bytes.constData(), 1, size_t(bytes.size()), file);
        std::fclose(file);
    }
    QFile png(samples + "/atelier-invoice-scan.png");
    ASSERT_TRUE(png.open(QIODevice::ReadOnly));
    writeFile(dir.filePath("in/cut.png"), png.read(2000));
    writeFile(dir.filePath("two\nlines.pdf"), "");
    ASSERT_EQ(QProcess::execute("mkfifo", {dir.filePath("pipe.pdf")}), 0);

    const CliRun run = runCli({"--quiet", "--jobs", "1", dir.filePath("missing.pdf"),
                               dir.filePath("pipe.pdf"), dir.filePath("two\nlines.pdf"), dir.filePath("in")});
    EXPECT_EQ(run.exitCode, 2);
    QList<QByteArray> lines = run.err.trimmed().split('\n');
    lines.removeIf([](const QByteArray &line) { return line.startsWith("libpng error"); }); // not ours
    ASSERT_EQ(lines.size(), 5) << run.err.toStdString();
    const QByteArray base = QFile::encodeName(dir.path());
    EXPECT_EQ(lines[0], base + "/missing.pdf: Failed: No such file or directory");
    EXPECT_EQ(lines[1], base + "/pipe.pdf: Failed: not a regular file");
    EXPECT_EQ(lines[2], base + "/two\\nlines.pdf: Failed: The file is empty");
    EXPECT_EQ(lines[3], folder + "/bad\\xfe.pdf: Failed: The file is empty");
    EXPECT_TRUE(lines[4].startsWith(folder + "/cut.png: Failed: ")) << lines[4].toStdString();
    const QJsonArray docs = QJsonDocument::fromJson(run.out).array();
    ASSERT_EQ(docs.size(), 1);
    EXPECT_EQ(docs[0].toObject().value("number").toString(), QStringLiteral("BP-2024-0387"));
}

// A write to standard output that fails (a full disk) is an export failure, not success; a document
// cut at the page limit says so unless quiet.
TEST(BatchCli, ReportsFullOutputAndCutDocuments)
{
    QTemporaryDir dir;
    QProcess process;
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    process.start(QStringLiteral(TABRIX_CLI), {"--quiet", samples + "/bluepeak-invoice.pdf"});
    ASSERT_TRUE(process.waitForFinished(120000));
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_EQ(process.readAllStandardError().trimmed(),
              QByteArray("tabrix-cli: Export failed: No space left on device"));

    QStringList pages{"--empty", "--pages"};
    for (int i = 0; i < 41; ++i)
        pages.append(samples + "/bluepeak-invoice.pdf");
    pages << "--" << dir.filePath("long.pdf");
    ASSERT_EQ(QProcess::execute("qpdf", pages), 0);
    const CliRun run = runCli({"--format", "csv", dir.filePath("long.pdf")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.err.contains(dir.filePath("long.pdf").toUtf8() + ": read the first 40 of 41 pages"))
        << run.err.toStdString();
}

} // namespace
