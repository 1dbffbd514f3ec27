#include "UiTestSupport.h"

#include "model/CustomFieldCodec.h"
#include "ui/CustomFieldsDialog.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QToolButton>

namespace {

// Regular expressions are checked with the extractor's engine.
TEST(CustomFieldsDialogTest, RegexCheck)
{
    EXPECT_TRUE(CustomFieldsDialog::isBadRegex("PO("));
    EXPECT_TRUE(CustomFieldsDialog::isBadRegex("a{2,1}"));
    EXPECT_FALSE(CustomFieldsDialog::isBadRegex("PO[- ]?(\\d+)"));
    EXPECT_FALSE(CustomFieldsDialog::isBadRegex("(?<=Ref )\\w+"));
}

class CustomFieldsTest : public UiTest {
protected:
    CustomFieldsDialog *openSheet()
    {
        window->showCustomFields();
        CustomFieldsDialog *sheet = window->customFieldsDialog();
        EXPECT_TRUE(sheet && QTest::qWaitForWindowExposed(sheet));
        return sheet;
    }
    QList<CustomFieldDef> saved() const
    {
        QFile file(dataFolder() + "/custom-fields.json");
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return CustomFieldCodec::decode(file.readAll()).value_or(QList<CustomFieldDef>());
    }
};

// Rows write through at once; a pattern that does not compile gets the red border in regex mode only;
// removing the last row brings back the empty text.
TEST_F(CustomFieldsTest, EditsWriteThroughAndBadRegexIsMarked)
{
    open();
    CustomFieldsDialog *sheet = openSheet();
    auto *none = sheet->findChild<QLabel *>(QStringLiteral("noCustomFields"));
    EXPECT_TRUE(none->isVisible());
    QTest::mouseClick(sheet->findChild<QPushButton *>(QStringLiteral("addField")), Qt::LeftButton);
    QApplication::processEvents();
    ASSERT_EQ(sheet->rowCount(), 1);
    EXPECT_FALSE(none->isVisible());
    ASSERT_EQ(saved().size(), 1);
    EXPECT_EQ(saved()[0].name, "New field");
    EXPECT_FALSE(saved()[0].isRegex);

    sheet->nameEdit(0)->selectAll();
    QTest::keyClicks(sheet->nameEdit(0), "PO number");
    QTest::keyClicks(sheet->patternEdit(0), "PO(");
    EXPECT_EQ(saved()[0].name, "PO number");
    EXPECT_EQ(saved()[0].pattern, "PO(");
    EXPECT_FALSE(sheet->patternEdit(0)->isInvalid());
    EXPECT_EQ(sheet->patternEdit(0)->placeholderText(), "e.g. Purchase order");

    QTest::mouseClick(sheet->regexButton(0), Qt::LeftButton);
    EXPECT_TRUE(saved()[0].isRegex);
    EXPECT_TRUE(sheet->patternEdit(0)->isInvalid());
    EXPECT_EQ(sheet->patternEdit(0)->placeholderText(), "e.g. PO[- ]?(\\d+)");
    QTest::keyClicks(sheet->patternEdit(0), "\\d+)");
    EXPECT_FALSE(sheet->patternEdit(0)->isInvalid());
    QTest::keyClick(sheet->patternEdit(0), Qt::Key_Backspace);
    EXPECT_TRUE(sheet->patternEdit(0)->isInvalid());
    QTest::mouseClick(sheet->keywordButton(0), Qt::LeftButton);
    EXPECT_FALSE(sheet->patternEdit(0)->isInvalid());

    // What was written is what a new store starts with.
    StoreOptions options;
    options.dataFolder = dataFolder();
    Store reopened(options);
    EXPECT_EQ(reopened.customFields(), store->customFields());

    QTest::mouseClick(sheet->removeButton(0), Qt::LeftButton);
    QApplication::processEvents();
    EXPECT_EQ(sheet->rowCount(), 0);
    EXPECT_TRUE(none->isVisible());
    EXPECT_TRUE(saved().isEmpty());
}

// Closing the sheet brings the ready documents' custom fields in line with the definitions.
TEST_F(CustomFieldsTest, DoneSyncsDocuments)
{
    open();
    addAndWait({"invoice.pdf"});
    CustomFieldsDialog *sheet = openSheet();
    QTest::mouseClick(sheet->findChild<QPushButton *>(QStringLiteral("addField")), Qt::LeftButton);
    QApplication::processEvents();
    sheet->nameEdit(0)->selectAll();
    QTest::keyClicks(sheet->nameEdit(0), "Reference");
    QTest::keyClicks(sheet->patternEdit(0), "Invoice No");
    const DocPtr doc = store->docs().first();
    const QString key = uuidText(store->customFields()[0].id);
    EXPECT_TRUE(doc->value(key).isEmpty()); // nothing changes in documents while the sheet is open

    QTest::mouseClick(sheet->findChild<QPushButton *>(QStringLiteral("done")), Qt::LeftButton);
    EXPECT_TRUE(waitUntil([&] { return window->customFieldsDialog() == nullptr; }));
    const auto custom = std::find_if(doc->fields().cbegin(), doc->fields().cend(),
                                     [&](const Field &f) { return f.key == key; });
    ASSERT_NE(custom, doc->fields().cend());
    EXPECT_EQ(custom->label, "Reference");
    EXPECT_EQ(custom->source, "kw|Invoice No");
}

// Answers every open dialog with one prepared file.
class OneFileUi : public StoreUi {
public:
    QString file;
    QStringList chooseFilesAndFolders(const QString &) override { return {}; }
    QString chooseFileToOpen(const QString &) override { return file; }
    QString chooseFileToSave(const QString &, const QString &) override { return {}; }
    void setClipboardText(const QString &) override {}
};

// A file that is not a definitions list is refused in an alert over the sheet, and nothing changes.
TEST_F(CustomFieldsTest, BadImportAlertsAndKeepsDefinitions)
{
    OneFileUi ui;
    ui.file = docsFolder() + "/bad.json";
    QFile bad(ui.file);
    ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
    bad.write(R"([{"id": "6F1C2A4E-0000-4000-8000-000000000001", "name": "PO", "pattern": "PO"}])");
    bad.close();
    open(1, &ui);
    CustomFieldsDialog *sheet = openSheet();
    QTest::mouseClick(sheet->findChild<QPushButton *>(QStringLiteral("addField")), Qt::LeftButton);
    const QList<CustomFieldDef> before = store->customFields();

    for (QPushButton *button : sheet->findChildren<QPushButton *>()) {
        if (button->text() == "Import JSON\u2026")
            QTest::mouseClick(button, Qt::LeftButton);
    }
    ASSERT_TRUE(waitUntil([&] { return window->alert() && window->alert()->isVisible(); }));
    EXPECT_EQ(window->alert()->text(), "That file isn't a Tabrix custom-fields JSON file.");
    EXPECT_EQ(store->customFields(), before);
    EXPECT_EQ(sheet->rowCount(), 1);
}

} // namespace
