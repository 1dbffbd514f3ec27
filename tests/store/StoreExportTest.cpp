#include "StoreTestSupport.h"
#include "store/Store.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace {

class StoreExport : public ::testing::Test {
protected:
    QTemporaryDir data;
    QTemporaryDir files;
    FakeLoader fake;
    FakeUi ui;
    std::unique_ptr<Store> store;

    void SetUp() override
    {
        store = std::make_unique<Store>(StoreOptions{data.path(), fake.loader(), &ui});
        fake.setText("a.pdf", {"ACME Ltd", "Total 12.50"});
        fake.setText("b.pdf", {"Total 4.00"});
        store->add(makeFiles(files, {"a.pdf", "b.pdf", "c.pdf"}));
        ASSERT_TRUE(waitUntil([&] { return !store->isProcessing(); }));
    }

    void approve(std::initializer_list<int> indices)
    {
        for (int i : indices)
            store->docs()[i]->setApproved(true);
    }
};

// With nothing approved every export refuses with the message, opens no dialog and leaves the clipboard.
TEST_F(StoreExport, NothingApprovedRefuses)
{
    ui.saveAnswer = files.filePath("out");
    ui.clipboard = "before";
    for (void (Store::*action)() :
         {&Store::exportCSV, &Store::copyTSV, &Store::exportJSON, &Store::exportXLSX}) {
        store->clearAlert();
        (store.get()->*action)();
        EXPECT_EQ(store->alertText(),
                  "Approve at least one document first. Only approved documents are exported.");
    }
    EXPECT_TRUE(ui.lastProposedName.isEmpty());
    EXPECT_EQ(ui.clipboard, "before");
    EXPECT_FALSE(QFile::exists(ui.saveAnswer));
}

// The clipboard copy follows the layout, holds approved documents only and counts documents, not rows.
TEST_F(StoreExport, CopyTsvFollowsLayout)
{
    approve({2, 0});
    store->copyTSV();
    EXPECT_EQ(store->alertText(),
              "Copied 2 approved documents as tab-separated text. Paste it into a spreadsheet.");
    QStringList lines = ui.clipboard.split('\n');
    ASSERT_EQ(lines.size(), 4); // header, two documents, final line feed
    EXPECT_TRUE(lines[0].startsWith("File\tVendor\tNumber"));
    EXPECT_TRUE(lines[1].startsWith("a.pdf\t"));
    EXPECT_TRUE(lines[2].startsWith("c.pdf\t"));

    store->setLayout(RowLayout::perLineItem);
    store->docs()[0]->setApproved(false);
    store->copyTSV();
    EXPECT_EQ(store->alertText(),
              "Copied 1 approved document as tab-separated text. Paste it into a spreadsheet.");
    lines = ui.clipboard.split('\n');
    EXPECT_TRUE(lines[0].endsWith("\tDocument total"));
    EXPECT_TRUE(lines[1].startsWith("c.pdf\t"));
}

// CSV proposes the layout's file name and writes the table; cancelling writes nothing and says nothing.
TEST_F(StoreExport, ExportCsv)
{
    approve({1});
    store->exportCSV();
    EXPECT_EQ(ui.lastProposedName, "tabrix-documents.csv");
    EXPECT_TRUE(store->alertText().isEmpty());

    ui.saveAnswer = files.filePath("out.csv");
    store->setLayout(RowLayout::perLineItem);
    store->exportCSV();
    EXPECT_EQ(ui.lastProposedName, "tabrix-line-items.csv");
    EXPECT_TRUE(store->alertText().isEmpty());
    const QByteArray csv = readBytes(ui.saveAnswer);
    EXPECT_TRUE(csv.startsWith("\xEF\xBB\xBF"
                               "File,Vendor,Number,Date,Currency,Line,"));
    EXPECT_EQ(csv.count("\r\n"), 2);
    EXPECT_TRUE(csv.contains("\r\nb.pdf,"));
}

// A write that fails is reported with "Export failed: " and the reason.
TEST_F(StoreExport, WriteFailureIsReported)
{
    approve({0});
    ui.saveAnswer = files.filePath("no/such/folder/out.json");
    store->exportJSON();
    EXPECT_TRUE(store->alertText().startsWith("Export failed: ")) << store->alertText().toStdString();
    EXPECT_GT(store->alertText().size(), QString("Export failed: ").size());
}

// JSON carries the approved documents with their custom fields; XLSX is a zip package.
TEST_F(StoreExport, ExportJsonAndXlsx)
{
    const CustomFieldDef def{QUuid::createUuid(), "Ref", "Ref", false};
    store->setCustomFields({def});
    approve({0, 1});
    ui.saveAnswer = files.filePath("out.json");
    store->exportJSON();
    EXPECT_EQ(ui.lastProposedName, "tabrix-export.json");
    const QJsonArray docs = QJsonDocument::fromJson(readBytes(ui.saveAnswer)).array();
    ASSERT_EQ(docs.size(), 2);
    EXPECT_EQ(docs[0].toObject()["file"].toString(), "a.pdf");
    EXPECT_EQ(docs[0].toObject()["path"].toString(), files.filePath("a.pdf"));
    EXPECT_EQ(docs[1].toObject()["total"].toDouble(), 4.0);
    EXPECT_TRUE(docs[1].toObject()["customFields"].toObject().contains("Ref"));

    ui.saveAnswer = files.filePath("out.xlsx");
    store->exportXLSX();
    EXPECT_EQ(ui.lastProposedName, "tabrix-export.xlsx");
    EXPECT_TRUE(store->alertText().isEmpty());
    EXPECT_TRUE(readBytes(ui.saveAnswer).startsWith("PK\x03\x04"));
}

} // namespace
