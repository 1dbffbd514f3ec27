#include "UiTestSupport.h"

#include "extract/CustomField.h"
#include "ui/CustomFieldsDialog.h"

namespace {

// Patterns are checked with the extractor's engine; a bad one is explained in the engine's words.
TEST(CustomFieldsDialogTest, RegexCheck)
{
    // clang-format off
    const std::pair<QString, QString> cases[] = {
        {"PO[- ]?(\\d+)", ""},
        {"(?<=Ref )\\w+", ""},
        {"PO(", "U_REGEX_MISMATCHED_PAREN"},
        {"a{2,1}", "U_REGEX_MAX_LT_MIN"},
    };
    // clang-format on
    for (const auto &[pattern, problem] : cases) {
        EXPECT_EQ(CustomFieldsDialog::isBadRegex(pattern), !problem.isEmpty()) << pattern.toStdString();
        const QString explained = CustomFieldsDialog::regexProblem(pattern);
        EXPECT_EQ(explained.isEmpty(), problem.isEmpty()) << pattern.toStdString();
        EXPECT_TRUE(explained.contains(problem)) << explained.toStdString();
    }
}

class CustomFieldsTest : public UiTest {
protected:
    CustomFieldsDialog *openSheet()
    {
        window->showCustomFields();
        CustomFieldsDialog *sheet = window->customFieldsDialog();
        EXPECT_NE(sheet, nullptr);
        if (sheet) {
            EXPECT_TRUE(QTest::qWaitForWindowExposed(sheet));
        }
        return sheet;
    }
};

// Rows reach the store at once; a pattern that does not compile gets the red border in regex mode only; an
// empty file to import is refused in an alert over the sheet; removing the last row brings back the empty
// text.
TEST_F(CustomFieldsTest, EditsWriteThroughAndBadRegexIsMarked)
{
    Answers ui;
    ui.openPath = makeFiles({"empty.json"}).first();
    open(1, &ui);
    CustomFieldsDialog *sheet = openSheet();
    auto *none = sheet->findChild<QLabel *>(QStringLiteral("noCustomFields"));
    EXPECT_TRUE(none->isVisible());
    QTest::mouseClick(sheet->findChild<QPushButton *>(QStringLiteral("addField")), Qt::LeftButton);
    ASSERT_EQ(sheet->rowCount(), 1);
    EXPECT_FALSE(none->isVisible());
    ASSERT_EQ(store->customFields().size(), 1);

    sheet->nameEdit(0)->selectAll();
    QTest::keyClicks(sheet->nameEdit(0), "PO number");
    QTest::keyClicks(sheet->patternEdit(0), "PO(");
    EXPECT_EQ(store->customFields()[0].name, "PO number");
    EXPECT_EQ(store->customFields()[0].pattern, "PO(");
    EXPECT_FALSE(sheet->patternEdit(0)->isInvalid());

    QTest::mouseClick(sheet->regexButton(0), Qt::LeftButton);
    EXPECT_TRUE(store->customFields()[0].isRegex);
    EXPECT_TRUE(sheet->patternEdit(0)->isInvalid());
    QTest::keyClicks(sheet->patternEdit(0), "\\d+)");
    EXPECT_FALSE(sheet->patternEdit(0)->isInvalid());
    QTest::keyClick(sheet->patternEdit(0), Qt::Key_Backspace);
    EXPECT_TRUE(sheet->patternEdit(0)->isInvalid());
    QTest::mouseClick(sheet->keywordButton(0), Qt::LeftButton);
    EXPECT_FALSE(sheet->patternEdit(0)->isInvalid());
    EXPECT_FALSE(store->customFields()[0].isRegex);

    for (QPushButton *button : sheet->findChildren<QPushButton *>())
        if (button->text().startsWith("Import"))
            QTest::mouseClick(button, Qt::LeftButton);
    ASSERT_TRUE(waitUntil([&] { return window->alert() && window->alert()->isVisible(); }));
    EXPECT_EQ(sheet->rowCount(), 1);

    QTest::mouseClick(sheet->removeButton(0), Qt::LeftButton);
    QApplication::processEvents();
    EXPECT_EQ(sheet->rowCount(), 0);
    EXPECT_TRUE(none->isVisible());
    EXPECT_TRUE(store->customFields().isEmpty());
}

// Added fields get names of their own; a name a built-in field has is refused with its reason (the store
// keeps the last name that was the field's own); one pattern more than a document's shared budget serves
// brings up the warning.
TEST_F(CustomFieldsTest, CollidingNamesAndTooManyPatterns)
{
    open();
    QList<CustomFieldDef> defs;
    for (int i = 0; i < Extractor::manyPatterns; ++i)
        defs.append({QUuid::createUuid(), QStringLiteral("F%1").arg(i), QStringLiteral("\\d+"), true});
    store->setCustomFields(defs);
    CustomFieldsDialog *sheet = openSheet();
    for (int i = 0; i < 2; ++i)
        QTest::mouseClick(sheet->findChild<QPushButton *>(QStringLiteral("addField")), Qt::LeftButton);
    EXPECT_EQ(store->customFields().last().name, "New field 2");
    sheet->nameEdit(51)->selectAll();
    QTest::keyClicks(sheet->nameEdit(51), "Total");
    EXPECT_EQ(store->customFields()[51].name, "Tota");
    EXPECT_FALSE(sheet->findChild<QLabel *>(QStringLiteral("manyPatterns"))->isVisible());
    QTest::mouseClick(sheet->regexButton(51), Qt::LeftButton);
    EXPECT_TRUE(sheet->findChild<QLabel *>(QStringLiteral("manyPatterns"))->isVisible());
}

// Documents keep their fields while the sheet is open; closing it brings the ready documents' custom
// fields in line with the definitions.
TEST_F(CustomFieldsTest, DoneSyncsDocuments)
{
    open();
    addAndWait({"invoice.pdf"});
    const DocPtr doc = store->docs().first();
    const QList<Field> before = doc->fields();
    CustomFieldsDialog *sheet = openSheet();
    QTest::mouseClick(sheet->findChild<QPushButton *>(QStringLiteral("addField")), Qt::LeftButton);
    QTest::keyClicks(sheet->patternEdit(0), "Invoice No");
    EXPECT_EQ(doc->fields(), before);

    QTest::mouseClick(sheet->findChild<QPushButton *>(QStringLiteral("done")), Qt::LeftButton);
    EXPECT_TRUE(
        waitUntil([&] { return !window->customFieldsDialog() && doc->fields().size() > before.size(); }));
    EXPECT_EQ(doc->fields().last().key, uuidText(store->customFields()[0].id));
}

} // namespace
