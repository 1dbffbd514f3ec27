#include "CliRunner.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUuid>
#include <atomic>
#include <cstdio>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>

namespace {

// Every refused invocation, of every mode, exits 1 with its message and writes nothing on standard
// output: usage errors, nothing supported, bad definitions (also colliding names), unreadable inputs, failed
// writes and an output that is one of the inputs (which keeps every byte).
TEST(Cli, RefusalsExitOneWithTheirMessage)
{
    QTemporaryDir dir;
    writeFile(dir.filePath("notes.txt"), "hello");
    writeFile(dir.filePath("broken.pdf"), "not a pdf");
    writeFile(dir.filePath("defs.json"), R"([{"id": "x", "isRegex": false, "name": "", "pattern": ""}])");
    const QString field = R"({"id": "%1", "isRegex": false, "name": "%2", "pattern": ""})";
    const auto named = [&](const QString &name) {
        return field.arg(QUuid::createUuid().toString(QUuid::WithoutBraces), name);
    };
    writeFile(dir.filePath("po.json"), ('[' + named("PO") + ',' + named("po") + ']').toUtf8());
    writeFile(dir.filePath("total.json"), ('[' + named("Total") + ']').toUtf8());
    writeFile(dir.filePath("unnamed.json"), ('[' + named("") + ',' + named("custom FIELD") + ']').toUtf8());
    // Lines of failed documents: one without a path, and lists of files that do not match (other counts,
    // one index naming two files).
    const QString form = dir.filePath("form.jsonl"), counts = dir.filePath("counts.jsonl"),
                  paths = dir.filePath("paths.jsonl");
    const QByteArray first = R"({"count":2,"error":"x","index":0,"path":"/a.pdf"})";
    writeFile(form, "{\"index\": 0}\n");
    writeFile(counts, first + '\n' + R"({"count":3,"error":"x","index":1,"path":"/b.pdf"})" + '\n');
    writeFile(paths, first + '\n' + R"({"count":2,"error":"x","index":0,"path":"/b.pdf"})" + '\n');
    const QString lists = dir.filePath("lists.jsonl");
    writeFile(lists, first + '\n' + R"({"count":2,"error":"x","index":1,"list":"b","path":"/b.pdf"})" + '\n');
    const QString pdf = samples + "/bluepeak-invoice.pdf", none = dir.filePath("none.json");
    const QString victim = dir.filePath("victim.pdf"), link = dir.filePath("link.csv");
    ASSERT_TRUE(QFile::copy(pdf, victim));
    ASSERT_TRUE(QFile::link(victim, link));
    // clang-format off
    const struct { QStringList args; QString err; } cases[] = {
        {{}, "no PATH given"},
        {{"--bogus", pdf}, "unknown option --bogus"},
        {{"--format", "pdf", pdf}, "--format must be json, csv, tsv, xlsx or jsonl"},
        {{"--format", "xlsx", pdf}, "--format xlsx requires --output FILE"},
        {{"--layout", "page", pdf}, "--layout must be document or line-item"},
        {{"--jobs", "0", pdf}, "--jobs needs a whole number of at least 1"},
        {{"--rules", "all", pdf}, "--rules must be core or full"},
        {{"--shard", "0/3", pdf}, "--shard needs K/N"},
        {{"--shard", "4/3", pdf}, "--shard needs K/N"},
        {{"--shard", "1/", pdf}, "--shard needs K/N"},
        {{"--merge"}, "--merge needs the jsonl FILEs to combine"},
        {{"--merge", "--format", "jsonl", none}, "--merge writes json, csv, tsv or xlsx and takes no --shard"},
        {{"--merge", "--shard", "1/2", none}, "--merge writes json, csv, tsv or xlsx and takes no --shard"},
        {{"--merge", none}, "cannot read " + none},
        {{"--merge", form}, form + ":1: not a line of tabrix-cli --format jsonl"},
        {{"--merge", counts}, counts + ":2: written for another list of files"},
        {{"--merge", paths}, paths + ":2: written for another list of files"},
        {{"--merge", lists}, lists + ":2: written for another list of files"},
        {{dir.filePath("notes.txt")}, "No supported files found. Tabrix reads PDF, PNG, JPEG, HEIC and TIFF files."},
        {{"--custom-fields", dir.filePath("defs.json"), pdf}, "That file isn't a Tabrix custom-fields JSON file."},
        {{"--custom-fields", none, pdf}, none + ": No such file or directory"},
        {{"--custom-fields", dir.filePath("po.json"), pdf}, "Two custom fields are named \"po\""},
        {{"--custom-fields", dir.filePath("total.json"), pdf}, "The custom field \"Total\" has the name of a built-in field"},
        {{"--custom-fields", dir.filePath("unnamed.json"), pdf}, "Two custom fields are named \"custom FIELD\""},
        {{"--output", dir.filePath("no/such/folder/out.json"), pdf}, "tabrix-cli: Export failed: "},
        {{"--format", "csv", "--output", victim, victim}, "--output " + victim + " is the input " + victim},
        {{"--format", "jsonl", "--output", victim, dir.path()}, " is the input "},
        {{"--output", link, dir.filePath("./victim.pdf")}, " is the input "},
        {{"--merge", "--output", victim, victim}, " is the input "},
        {{"--lines", none}, "cannot read " + none},
        {{"--dump-lines", dir.filePath("broken.pdf")}, dir.filePath("broken.pdf") + ": Failed: Can't open PDF"},
    };
    // clang-format on
    for (const auto &c : cases) {
        const CliRun run = runCli(c.args);
        EXPECT_EQ(run.exitCode, 1) << c.args.join(' ').toStdString();
        EXPECT_TRUE(run.out.isEmpty()) << c.args.join(' ').toStdString();
        EXPECT_TRUE(run.err.contains(c.err.toUtf8())) << run.err.toStdString();
    }
    EXPECT_EQ(readFile(victim), readFile(pdf));
}

// Every input that cannot be read is a failure of its own, named on one line with its cause even when
// quiet, while the rest of the batch is exported with status 2 (also when nothing is left): a missing path,
// a named pipe (which must not block), a device or other file named that is not a document, a damaged PNG
// (our message alone, none of the image library's), a name with a newline, and a name that is not UTF-8
// (read, and shown with the byte escaped), and a folder whose path is longer than the system takes.
TEST(BatchCli, UnreadableInputsFailOneByOne)
{
    QTemporaryDir dir;
    const QString in = dir.filePath("in");
    const QByteArray base = QFile::encodeName(dir.path()), folder = QFile::encodeName(in);
    QDir().mkpath(in);
    // Names that are not UTF-8, which Qt cannot spell: a readable invoice and an empty file.
    const char *script =
        R"(cd "$1" && cp "$0" "invoice-$(printf '\377').pdf" && : >"bad$(printf '\376').pdf" &&
        n=$(printf 'd%.0s' $(seq 200)) && mkdir deep && cd deep && for i in $(seq 25); do mkdir $n && cd $n; done)";
    ASSERT_EQ(QProcess::execute("bash", {"-c", script, samples + "/bluepeak-invoice.pdf", in}), 0);
    QByteArray deep = folder + "/deep";
    while (deep.size() < 4096) // the first folder whose path the system refuses
        deep += "/" + QByteArray(200, 'd');
    writeFile(dir.filePath("two\nlines.pdf"), "");
    ASSERT_EQ(QProcess::execute("mkfifo", {dir.filePath("pipe.pdf")}), 0);
    QByteArray png = readFile(samples + "/atelier-invoice-scan.png");
    for (qsizetype i = png.indexOf("IDAT") + 40, end = i + 20; i < end; ++i)
        png[i] = char(png[i] ^ 0x55);
    writeFile(dir.filePath("bad.png"), png);

    const CliRun run =
        runCli({"--quiet", "--jobs", "1", dir.filePath("missing.pdf"), dir.filePath("pipe.pdf"), "/dev/zero",
                dir.filePath("bad.png"), dir.filePath("two\nlines.pdf"), in});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.err,
              base + "/missing.pdf: Failed: No such file or directory\n" + base +
                  "/pipe.pdf: Failed: not a regular file\n/dev/zero: Failed: not a supported file\n" + base +
                  "/bad.png: Failed: Couldn't decode image\n" + base +
                  "/two\\nlines.pdf: Failed: The file is empty\n" + folder +
                  "/bad\\xfe.pdf: Failed: The file is empty\n" + deep + ": Failed: File name too long\n");
    const QJsonArray docs = QJsonDocument::fromJson(run.out).array();
    ASSERT_EQ(docs.size(), 1);
    EXPECT_EQ(docs[0]["number"].toString(), QStringLiteral("BP-2024-0387"));
    const CliRun allFailed = runCli({"--quiet", dir.filePath("missing.pdf")});
    EXPECT_EQ(allFailed.exitCode, 2);
    EXPECT_EQ(allFailed.out, "[]\n");
    QProcess::execute("rm", {"-r", in}); // QTemporaryDir cannot remove names Qt cannot spell
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

// A name that is not UTF-8 is read when given relative to the working folder.
TEST(BatchCli, ReadsOddNamesGivenRelative)
{
    QTemporaryDir dir;
    // Started by the shell, since Qt cannot pass a byte that is not UTF-8.
    const char *script = R"(cd "$1" && cp "$2/bluepeak-invoice.pdf" "inv-$(printf '\377').pdf" &&
        "$0" --quiet --format csv "inv-$(printf '\377').pdf"; rm "inv-$(printf '\377').pdf")";
    QProcess process;
    process.start("sh", {"-c", script, TABRIX_CLI, dir.path(), samples});
    ASSERT_TRUE(process.waitForFinished(120000));
    EXPECT_EQ(process.readAllStandardError(), QByteArray());
    EXPECT_EQ(process.readAllStandardOutput().count("BP-2024-0387"), 1);
}

// A file swapped for a named pipe while the batch runs is judged on what was opened, never waited on: every
// run against a name that flips between the two ends, with the document read or failed by name.
TEST(BatchCli, FileSwappedForAPipeNeverBlocks)
{
#ifdef RENAME_EXCHANGE
    QTemporaryDir dir;
    const QString path = dir.filePath("swap.pdf");
    const QByteArray name = QFile::encodeName(path), pipe = name + ".fifo";
    ASSERT_TRUE(QFile::copy(samples + "/bluepeak-invoice.pdf", path));
    ASSERT_EQ(::mkfifo(pipe.constData(), 0600), 0);
    std::atomic<bool> stop{false};
    std::thread swapper([&] {
        while (!stop)
            ::renameat2(AT_FDCWD, name.constData(), AT_FDCWD, pipe.constData(), RENAME_EXCHANGE);
    });
    for (int run = 0; run < 40; ++run) {
        QProcess cli;
        cli.start(QStringLiteral(TABRIX_CLI), {"--quiet", "--format", "csv", path});
        EXPECT_TRUE(cli.waitForFinished(10000)) << "run " << run << " blocked";
    } // a blocked one is killed as its QProcess goes
    stop = true;
    swapper.join();
#endif
}

} // namespace
