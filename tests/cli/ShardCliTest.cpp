#include "CliRunner.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <gtest/gtest.h>
#include <memory>

namespace {

CliRun merge(const QStringList &files, const QStringList &options = {})
{
    return runCli(QStringList{"--merge", "--quiet"} + options + files);
}

// The samples read once as a whole and once in three jsonl shards, shared by the tests below.
class SamplesCli : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        dir = std::make_unique<QTemporaryDir>();
        singleCsv = runCli({"--quiet", "--format", "csv", samples}).out;
        singleJson = runCli({"--quiet", "--jobs", "3", samples}).out;
        for (int k = 1; k <= 3; ++k) {
            const CliRun run = runCli({"--quiet", "--jobs", "2", "--format", "jsonl", "--shard",
                                       QStringLiteral("%1/3").arg(k), "--output", shard(k), samples});
            ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
        }
    }
    static void TearDownTestSuite() { dir.reset(); }

    static QString shard(int k) { return dir->filePath(QStringLiteral("shard-%1.jsonl").arg(k)); }

    static inline std::unique_ptr<QTemporaryDir> dir;
    static inline QByteArray singleCsv, singleJson;
};

// Folders expand as in the app, a file named twice is read once, and results follow queue order
// whatever the number of jobs.
TEST_F(SamplesCli, QueueOrderWithEachFileOnce)
{
    const QString pdf = samples + "/bluepeak-invoice.pdf";
    const CliRun run = runCli({"--jobs", "1", "--quiet", samples, pdf, samples + "/./bluepeak-invoice.pdf"});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(run.err.isEmpty());
    EXPECT_EQ(run.out, singleJson);
    const QJsonArray docs = QJsonDocument::fromJson(run.out).array();
    ASSERT_EQ(docs.size(), 5);
    EXPECT_EQ(docs[0]["file"].toString(), QStringLiteral("atelier-invoice-scan.png"));
    EXPECT_EQ(docs[1]["path"].toString(), QDir::cleanPath(pdf));
}

// The shards split the queue by index with no overlap and no gap, and merged in any order they give
// the single run's export byte for byte.
TEST_F(SamplesCli, ShardsPartitionTheRunAndMergeToItsExport)
{
    const QList<QList<int>> expected{{0, 3}, {1, 4}, {2}};
    for (int k = 1; k <= 3; ++k) {
        const QByteArray text = readFile(shard(k));
        ASSERT_TRUE(text.endsWith('\n'));
        QList<int> indices;
        for (const QByteArray &line : text.trimmed().split('\n')) {
            indices.append(QJsonDocument::fromJson(line)["index"].toInt(-1));
            EXPECT_EQ(QJsonDocument::fromJson(line)["count"].toInt(), 5);
        }
        std::sort(indices.begin(), indices.end()); // lines come in completion order
        EXPECT_EQ(indices, expected[k - 1]);
    }

    ASSERT_TRUE(singleCsv.startsWith("\xEF\xBB\xBF"));
    CliRun run = merge({shard(3), shard(1), shard(2)}, {"--format", "csv"});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(run.err.isEmpty());
    EXPECT_EQ(run.out, singleCsv);

    run = merge({shard(2), shard(3), shard(1)});
    EXPECT_EQ(run.out, singleJson);
}

// A shard killed halfway leaves a cut line and lost documents: the merge refuses rather than export
// less, and after that shard ran again (its old output still given) it merges to the right result.
TEST_F(SamplesCli, KilledShardIsRefusedUntilRunAgain)
{
    const QByteArray whole = readFile(shard(1));
    const QString killed = dir->filePath("killed.jsonl");
    writeFile(killed, whole.left(whole.indexOf('\n') + 1 + 40));
    CliRun run = merge({killed, shard(2), shard(3)}, {"--format", "csv"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.out.isEmpty());
    EXPECT_TRUE(run.err.contains(killed.toUtf8() + ":2: skipped an incomplete last line"));
    EXPECT_TRUE(run.err.contains("1 of 5 documents are missing"));

    const QString again = dir->filePath("again.jsonl");
    run = runCli({"--quiet", "--format", "jsonl", "--shard", "1/3", "--output", again, samples});
    ASSERT_EQ(run.exitCode, 0);
    run = merge({killed, shard(2), again, shard(3)}, {"--format", "csv"});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(run.out, singleCsv);
}

// Lines stream to standard output; a failed document gets "error" instead of fields, and a pattern that does
// not compile is named once. The merge lists it as a run does (text from the file escaped), lets a later
// line of a path win, keeps the custom fields the lines were read with (other definitions are refused) and
// writes a workbook to the named file.
TEST(JsonlCli, FailedDocumentsRetriesAndDefinitions)
{
    QTemporaryDir dir;
    writeFile(dir.filePath("a-broken.pdf"), "not a pdf");
    QFile::copy(samples + "/northwind-invoice.pdf", dir.filePath("b-good.pdf"));
    const QString defs = dir.filePath("defs.json"), noDefs = dir.filePath("none.json");
    writeFile(
        defs,
        R"json([{"id": "6F1E2D3C-4B5A-4978-8695-A4B3C2D1E0F9", "isRegex": true, "name": "Terms", "pattern": "Terms:\\s*(.+)"},
                {"id": "6F1E2D3C-4B5A-4978-8695-A4B3C2D1E0FA", "isRegex": true, "name": "PO", "pattern": "PO("}])json");
    writeFile(noDefs, "[]");
    const CliRun run = runCli({"--quiet", "--custom-fields", defs, "--format", "jsonl", dir.path()});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.err.count("Custom field \"PO\": the pattern PO( does not compile"), 1)
        << run.err.toStdString();
    QList<QByteArray> lines = run.out.trimmed().split('\n');
    std::sort(lines.begin(), lines.end()); // from completion order to {"confidence"… before {"count"…
    ASSERT_EQ(lines.size(), 2);
    const QJsonObject failed = QJsonDocument::fromJson(lines[1]).object();
    const QJsonObject good = QJsonDocument::fromJson(lines[0]).object();
    EXPECT_EQ(failed.keys(), (QStringList{"count", "error", "file", "index", "list", "path"}));
    EXPECT_TRUE(failed.value("error").toString().startsWith("Can't open PDF"));
    EXPECT_EQ((QList<int>{failed.value("index").toInt(), good.value("index").toInt()}), (QList<int>{0, 1}));
    EXPECT_EQ(good.value("path").toString(), QDir(dir.path()).filePath("b-good.pdf"));

    const QString out = dir.filePath("out.jsonl");
    writeFile(out, QByteArray(run.out).replace("Can't open PDF", "Can't\\u001b[2J\\nopen PDF") +
                       QByteArray(lines[0]).replace("NW-24117", "NW-RETRIED") + '\n');
    CliRun merged = merge({out}, {"--custom-fields", defs, "--format", "tsv"});
    EXPECT_EQ(merged.exitCode, 2);
    EXPECT_TRUE(
        merged.err.contains(dir.filePath("a-broken.pdf").toUtf8() + ": Failed: Can't\\x1b[2J\\nopen PDF"))
        << merged.err.toStdString();
    const QList<QByteArray> rows = merged.out.split('\n');
    ASSERT_EQ(rows.size(), 3) << merged.out.toStdString(); // header and the good document, once
    EXPECT_TRUE(rows[0].endsWith("\tTerms\tPO"));
    EXPECT_TRUE(rows[1].contains("\tNW-RETRIED\t")) << rows[1].toStdString();
    EXPECT_TRUE(rows[1].contains("\tNet 30.")) << rows[1].toStdString();

    merged =
        merge({out}, {"--custom-fields", defs, "--format", "xlsx", "--output", dir.filePath("out.xlsx")});
    EXPECT_EQ(merged.exitCode, 2);
    EXPECT_TRUE(readFile(dir.filePath("out.xlsx")).startsWith("PK\x03\x04"));
    merged = merge({out}, {"--custom-fields", noDefs});
    EXPECT_EQ(merged.exitCode, 1);
    EXPECT_TRUE(merged.err.contains("read with other custom field definitions"));
}

} // namespace
