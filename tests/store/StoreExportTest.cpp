#include "StoreTestSupport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

class StoreExport : public StoreTest {
protected:
    QList<DocPtr> docs;
    void SetUp() override { docs = readBatch(3); }
};

// With nothing approved every export refuses with the message, opens no dialog and leaves the clipboard.
TEST_F(StoreExport, NothingApprovedRefuses)
{
    ui.clipboard = "before";
    for (void (Store::*action)() :
         {&Store::exportCSV, &Store::copyTSV, &Store::exportJSON, &Store::exportXLSX}) {
        store->clearAlert();
        (store.get()->*action)();
        EXPECT_EQ(store->alertText(),
                  "Approve at least one document first. Only approved documents are exported.");
    }
    EXPECT_TRUE(ui.proposedName.isEmpty());
    EXPECT_EQ(ui.clipboard, "before");
}

// CSV and the clipboard follow the layout's columns and hold approved documents only,
// in batch order; the copy message counts documents; a cancelled dialog is silent.
TEST_F(StoreExport, CsvAndTsvFollowLayout)
{
    docs[2]->setApproved(true);
    docs[0]->setApproved(true);
    store->copyTSV();
    EXPECT_EQ(store->alertText(),
              "Copied 2 approved documents as tab-separated text. Paste it into a spreadsheet.");
    const QStringList lines = ui.clipboard.split('\n');
    ASSERT_EQ(lines.size(), 4);
    EXPECT_TRUE(lines[1].startsWith("doc1.pdf\t")) << lines[1].toStdString();
    EXPECT_TRUE(lines[2].startsWith("doc3.pdf\t")) << lines[2].toStdString();

    store->clearAlert();
    store->exportCSV();
    EXPECT_TRUE(store->alertText().isEmpty());
    docs[0]->setApproved(false);
    store->setLayout(RowLayout::perLineItem);
    ui.saveAnswer = files.filePath("out.csv");
    store->exportCSV();
    EXPECT_TRUE(readFile(ui.saveAnswer).endsWith(",Document total\r\ndoc3.pdf,,,,,,,,,,\r\n"));
    store->copyTSV();
    EXPECT_EQ(store->alertText(),
              "Copied 1 approved document as tab-separated text. Paste it into a spreadsheet.");
    EXPECT_TRUE(ui.clipboard.endsWith("\tDocument total\ndoc3.pdf\t\t\t\t\t\t\t\t\t\t\n"));
}

// JSON holds the approved documents with the custom fields; a failed write reports "Export failed: " and
// the reason.
TEST_F(StoreExport, JsonAndWriteFailure)
{
    store->setCustomFields({CustomFieldDef{QUuid::createUuid(), "Ref", "Ref", false}});
    docs[1]->setApproved(true);
    ui.saveAnswer = files.filePath("out.json");
    store->exportJSON();
    const QJsonArray json = QJsonDocument::fromJson(readFile(ui.saveAnswer)).array();
    ASSERT_EQ(json.size(), 1);
    EXPECT_EQ(json[0]["path"].toString(), files.filePath("doc2.pdf"));
    EXPECT_TRUE(json[0]["customFields"].toObject().contains("Ref"));

    ui.saveAnswer = files.filePath("no/such/folder/out.xlsx");
    store->exportXLSX();
    EXPECT_TRUE(store->alertText().startsWith("Export failed: ")) << store->alertText().toStdString();
    EXPECT_GT(store->alertText().size(), 15);
}

} // namespace
