#include "store/BatchFile.h"
#include "model/CustomFieldDef.h"
#include "support/TestSupport.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sqlite3.h>

namespace {

/// A document using every part the file keeps: a boxed and a typed field, a custom one, an item, rows.
StoredDoc sampleDoc(const QString &name)
{
    StoredDoc doc;
    doc.id = QUuid::createUuid();
    doc.path = "/docs/" + name;
    doc.stamp = {1234, 1700000000123, QByteArray(32, 'h')};
    doc.status = DocStatus::Ready;
    Field total = emptyField("total", "Total");
    total.value = "1.234,56";
    total.confidence = 0.1 + 0.2; // an inexact double must come back exactly
    total.box = PageBox{1, QRectF(0.1, 0.2, 0.3, 0.04)};
    Field custom = emptyField(uuidText(QUuid::createUuid()), "PO");
    custom.isCustom = true;
    custom.source = "re|PO(\\d+)";
    custom.value = "typed";
    custom.edited = true;
    doc.fields = {total, custom};
    LineItem item;
    item.description = "Chair \u00e9";
    item.amount = "298.00";
    item.box = PageBox{0, QRectF(0.1, 0.5, 0.8, 0.02)};
    doc.items = {item};
    doc.rows = {Row(0, {TextLine{"Total", QRectF(0.1, 0.2, 0.1, 0.02), 0},
                        TextLine{"1.234,56", QRectF(0.5, 0.2, 0.1, 0.02), 0}})};
    return doc;
}

int userVersion(const QString &path)
{
    sqlite3 *db = nullptr;
    sqlite3_open(QFile::encodeName(path).constData(), &db);
    sqlite3_stmt *stmt = nullptr;
    sqlite3_prepare_v2(db, "PRAGMA user_version", -1, &stmt, nullptr);
    const int version = sqlite3_step(stmt) == SQLITE_ROW ? sqlite3_column_int(stmt, 0) : -1;
    sqlite3_finalize(stmt);
    sqlite3_close(db);
    return version;
}

class BatchFileTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString path = dir.filePath("sub/batch.tabrix");

    BatchFile::Opened open()
    {
        auto opened = BatchFile::open(path);
        if (auto *error = std::get_if<TabrixError>(&opened))
            ADD_FAILURE() << error->message.toStdString();
        return std::move(std::get<BatchFile::Opened>(opened));
    }
    QStringList setAside() const
    {
        return QDir(dir.filePath("sub")).entryList({"batch.tabrix.*"}, QDir::Files);
    }
};

// Documents come back exactly as saved, in batch order, with their export marks; a run cut short comes
// back queued; removing and clearing are kept too.
TEST_F(BatchFileTest, RoundTrip)
{
    StoredDoc a = sampleDoc("a.pdf"), b = sampleDoc("b.pdf"), c = sampleDoc("c.pdf");
    b.status = DocStatus::failed("Can't open PDF");
    c.status = DocStatus::Reading;
    {
        BatchFile::Opened fresh = open();
        EXPECT_TRUE(fresh.docs.isEmpty());
        EXPECT_FALSE(fresh.file->insert({a, b, c}, 0));
        a.approved = true;
        a.fields[0].value = "9.99";
        EXPECT_FALSE(fresh.file->save(a, 0));
        EXPECT_FALSE(fresh.file->saveExported(b.id, b.fields, {}));
    }
    b.exported = std::pair{b.fields, QList<LineItem>{}};
    c.status = DocStatus::Queued;
    BatchFile::Opened again = open();
    EXPECT_TRUE(again.notice.isEmpty());
    EXPECT_EQ(again.docs, (QList<StoredDoc>{a, b, c}));

    EXPECT_FALSE(again.file->remove(b.id));
    EXPECT_EQ(open().docs, (QList<StoredDoc>{a, c}));
    EXPECT_FALSE(again.file->clear());
    EXPECT_TRUE(open().docs.isEmpty());
    EXPECT_TRUE(setAside().isEmpty());
}

// A file without a schema (version 0) is brought to the current version; one from a newer version is
// set aside unchanged and a fresh batch starts, and so is one that is not a database.
TEST_F(BatchFileTest, VersionsAndDamage)
{
    QDir().mkpath(dir.filePath("sub"));
    writeFile(path, {});
    EXPECT_TRUE(open().docs.isEmpty());
    EXPECT_EQ(userVersion(path), BatchFile::schemaVersion);

    open().file->save(sampleDoc("a.pdf"), 0);
    sqlite3 *db = nullptr;
    sqlite3_open(QFile::encodeName(path).constData(), &db);
    sqlite3_exec(db, "PRAGMA user_version = 99", nullptr, nullptr, nullptr);
    sqlite3_close(db);
    {
        const BatchFile::Opened newer = open();
        EXPECT_TRUE(newer.notice.startsWith("The batch was saved by a newer version of Tabrix."));
        EXPECT_TRUE(newer.docs.isEmpty());
    }
    ASSERT_EQ(setAside().size(), 1);
    EXPECT_EQ(userVersion(dir.filePath("sub/" + setAside()[0])), 99);

    const QByteArray garbage(5000, 'x');
    writeFile(path, garbage);
    const BatchFile::Opened damaged = open();
    EXPECT_TRUE(damaged.notice.startsWith("The batch file was damaged"));
    EXPECT_TRUE(damaged.docs.isEmpty());
    const QStringList aside = setAside().filter(".damaged-");
    ASSERT_EQ(aside.size(), 1);
    EXPECT_EQ(readFile(dir.filePath("sub/" + aside[0])), garbage);
}

#ifdef TABRIX_BATCH_KILL
// A writer killed with SIGKILL at random moments leaves a file that opens every time with every change
// it had committed.
TEST(BatchFileKill, SurvivesKills)
{
    QTemporaryDir dir;
    QProcess loop;
    loop.start(TABRIX_BATCH_KILL, {"--kills", "5", "--file", dir.filePath("kill.tabrix")});
    ASSERT_TRUE(loop.waitForFinished(120000));
    EXPECT_EQ(loop.exitCode(), 0) << loop.readAllStandardError().toStdString();
}
#endif

} // namespace
