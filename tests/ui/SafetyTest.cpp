#include "UiTestSupport.h"

#include "ui/BatchSummaryView.h"
#include "ui/DocumentPane.h"
#include "ui/FormPane.h"
#include "ui/ReviewView.h"
#include "ui/SidebarView.h"

#include <QPushButton>

namespace {

/// Answers every question with `answer` and notes it; saves go to `savePath`.
struct Answers : StoreUi {
    bool answer = false;
    QStringList asked;
    QString savePath;

    QStringList chooseFilesAndFolders(const QString &) override { return {}; }
    QString chooseFileToOpen(const QString &) override { return {}; }
    QString chooseFileToSave(const QString &, const QString &) override { return savePath; }
    void setClipboardText(const QString &) override {}
    bool confirm(const QString &question, const QString &, const QString &) override
    {
        asked.append(question);
        return answer;
    }
};

class SafetyTest : public UiTest {
protected:
    /// A button of the review screen on show.
    QPushButton *button(const char *name) const
    {
        return window->review()->findChild<QPushButton *>(QString::fromLatin1(name));
    }
    QPushButton *summaryButton(const QString &text) const
    {
        for (auto *b : window->sidebar()->findChildren<QPushButton *>()) {
            if (b->text() == text)
                return b;
        }
        return nullptr;
    }
    /// Clicks `b` as a mouse would, lets the window settle and presses Space wherever focus went.
    void clickThenSpace(QPushButton *b)
    {
        QTest::mouseClick(b, Qt::LeftButton);
        QApplication::processEvents();
        QApplication::processEvents();
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QApplication::processEvents();
    }

    Answers answers;
};

// A button that disables or hides itself leaves focus on the form, where Space neither hides the
// outlines (after "Approve") nor clears the batch (after "Approve all ready").
TEST_F(SafetyTest, FocusAfterASelfDisablingButtonIsHarmless)
{
    open(1, &answers);
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    addAndWait({"1.pdf", "2.pdf", "3.pdf"});
    clickThenSpace(button("approve"));
    EXPECT_EQ(QApplication::focusWidget(), window->review()->formPane());
    EXPECT_TRUE(window->review()->documentPane()->showOutlines());

    store->move(+1);
    clickThenSpace(summaryButton("Approve all ready"));
    EXPECT_EQ(store->docs().size(), 3);
    EXPECT_EQ(store->approvedDocs().size(), 3);
    EXPECT_TRUE(answers.asked.isEmpty());

    // At the last document "Next" disables itself; Space then does not approve or move anything.
    store->docs()[2]->setApproved(false);
    QApplication::processEvents();
    clickThenSpace(button("next"));
    EXPECT_EQ(store->position(), "3 of 3");
    EXPECT_FALSE(store->docs()[2]->approved());
}

// The window's guards reach the store: closing with an approval not yet exported asks and stays open
// when declined; "Clear" asks while the batch holds work and empties it once accepted.
TEST_F(SafetyTest, WindowAsksBeforeLosingWork)
{
    open(1, &answers);
    addAndWait({"1.pdf"});
    EXPECT_TRUE(window->close());
    window->show();
    store->docs()[0]->setApproved(true);
    EXPECT_FALSE(window->close());
    EXPECT_EQ(answers.asked, QStringList({"Quit without exporting?"}));
    QTest::mouseClick(summaryButton("Clear"), Qt::LeftButton);
    EXPECT_EQ(answers.asked.size(), 2);
    EXPECT_EQ(store->docs().size(), 1);
    answers.answer = true;
    QTest::mouseClick(summaryButton("Clear"), Qt::LeftButton);
    EXPECT_TRUE(store->docs().isEmpty());
    EXPECT_TRUE(window->close());
}

} // namespace
