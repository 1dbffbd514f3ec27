#include "CliRunner.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace {

CliRun merge(const QStringList &files, const QStringList &options = {})
{
    return runCli(QStringList{"--merge", "--quiet"} + options + files);
}

// The samples read once as a whole and once in three jsonl shards, shared by the tests below.
class ShardCli : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        dir = std::make_unique<QTemporaryDir>();
        singleCsv = runCli({"--quiet", "--format", "csv", samples}).out;
        singleJson = runCli({"--quiet", samples}).out;
        for (int k = 1; k <= 3; ++k) {
            const CliRun run = runCli({"--quiet", "--jobs", "2", "--format", "jsonl", "--shard",
                                       QStringLiteral("%1/3").arg(k), "--output", shard(k), samples});
            ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
        }
    }
    static void TearDownTestSuite() { dir.reset(); }

    static QString shard(int k) { return dir->filePath(QStringLiteral("shard-%1.jsonl").arg(k)); }

    static inline std::unique_ptr<QTemporaryDir> dir;
    static inline QByteArray singleCsv;
    static inline QByteArray singleJson;
};

// The shards split the queue by index with no overlap and no gap, and merged in any order they give
// the single run's export byte for byte.
TEST_F(ShardCli, ShardsPartitionTheRunAndMergeToItsExport)
{
    QSet<int> seen;
    for (int k = 1; k <= 3; ++k) {
        const QByteArray text = readFile(shard(k));
        ASSERT_TRUE(text.endsWith('\n'));
        for (const QByteArray &line : text.trimmed().split('\n')) {
            const QJsonObject object = QJsonDocument::fromJson(line).object();
            const int index = object.value("index").toInt(-1);
            EXPECT_EQ(index % 3, k - 1);
            EXPECT_EQ(object.value("count").toInt(), 5);
            EXPECT_FALSE(seen.contains(index));
            seen.insert(index);
        }
    }
    EXPECT_EQ(seen, (QSet<int>{0, 1, 2, 3, 4}));

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
TEST_F(ShardCli, KilledShardIsRefusedUntilRunAgain)
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

    // Lines from another file list (here: another count) must not be mixed in.
    QByteArray foreign = whole.left(whole.indexOf('\n'));
    foreign.replace("\"count\":5", "\"count\":6");
    writeFile(killed, foreign + '\n');
    run = merge({shard(1), shard(2), shard(3), killed});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.err.contains("written for another list of files"));
}

// Lines stream to standard output; a failed document gets "error" instead of fields, and the merge
// lists it as a run does, lets a later line of a path win, and checks definitions and line form.
TEST(JsonlCli, FailedDocumentsDuplicatesAndBadInput)
{
    QTemporaryDir dir;
    writeFile(dir.filePath("a-broken.pdf"), "not a pdf");
    QFile::copy(samples + "/bluepeak-invoice.pdf", dir.filePath("b-good.pdf"));
    const CliRun run = runCli({"--quiet", "--format", "jsonl", dir.path()});
    EXPECT_EQ(run.exitCode, 2);
    const QList<QByteArray> lines = run.out.trimmed().split('\n');
    ASSERT_EQ(lines.size(), 2);
    const qsizetype goodLine = lines[0].contains("\"fields\"") ? 0 : 1; // completion order
    const QJsonObject failed = QJsonDocument::fromJson(lines[1 - goodLine]).object();
    const QJsonObject good = QJsonDocument::fromJson(lines[goodLine]).object();
    EXPECT_FALSE(failed.contains("fields"));
    EXPECT_EQ(failed.value("index").toInt(), 0);
    EXPECT_TRUE(failed.value("error").toString().startsWith("Can't open PDF"));
    EXPECT_EQ(good.value("index").toInt(), 1);
    EXPECT_EQ(good.value("total").toDouble(), 176.31);
    EXPECT_EQ(good.value("path").toString(), QDir(dir.path()).filePath("b-good.pdf"));

    const QString out = dir.filePath("out.jsonl");
    QByteArray retried = lines[goodLine];
    retried.replace("BP-2024-0387", "BP-RETRIED");
    writeFile(out, run.out + retried + '\n');
    CliRun merged = merge({out}, {"--format", "tsv"});
    EXPECT_EQ(merged.exitCode, 2);
    EXPECT_TRUE(merged.err.contains(dir.filePath("a-broken.pdf").toUtf8() + ": Failed: Can't open PDF"));
    EXPECT_EQ(merged.out.count('\n'), 2); // header and the good document, once
    EXPECT_TRUE(merged.out.contains("\tBP-RETRIED\t"));

    writeFile(
        dir.filePath("defs.json"),
        R"([{"id": "6F1E2D3C-4B5A-4978-8695-A4B3C2D1E0F9", "isRegex": false, "name": "T", "pattern": "T"}])");
    merged = merge({out}, {"--custom-fields", dir.filePath("defs.json")});
    EXPECT_EQ(merged.exitCode, 1);
    EXPECT_TRUE(merged.err.contains("read with other custom field definitions"));

    writeFile(out, "{\"index\": 0}\n" + run.out);
    merged = merge({out});
    EXPECT_EQ(merged.exitCode, 1);
    EXPECT_TRUE(merged.err.contains(out.toUtf8() + ":1: not a line of tabrix-cli --format jsonl"));
}

} // namespace
