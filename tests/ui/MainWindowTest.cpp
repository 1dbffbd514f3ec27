#include "UiTestSupport.h"

#include "ui/DropHighlight.h"
#include "ui/PlatformText.h"

namespace {

class MainWindowTest : public UiTest {
protected:
    /// A button of the review screen on show.
    QPushButton *button(const char *name) const { return window->review()->findChild<QPushButton *>(name); }
    /// A button of the batch summary, by its text.
    QPushButton *summaryButton(const QString &text) const
    {
        const auto buttons = window->sidebar()->findChildren<QPushButton *>();
        return *std::find_if(buttons.cbegin(), buttons.cend(),
                             [&](QPushButton *b) { return b->text() == text; });
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

// A folder dropped on a button deep inside the window is taken by the window: the highlight shows while
// it hovers, and its files are read and the first one reviewed. A drag of plain text is no drop.
TEST_F(MainWindowTest, DroppedFolderIsReadAndReviewed)
{
    open();
    makeFiles({"b.pdf", "a.png", "sub/c.tiff"});
    QWidget *target = window->findChild<QPushButton *>(QStringLiteral("chooseFiles"));
    auto *highlight = window->findChild<DropHighlight *>();

    QMimeData text;
    text.setText(QStringLiteral("hello"));
    QDragEnterEvent textEnter(QPoint(5, 5), Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &textEnter);
    EXPECT_FALSE(store->isTargeted());

    QMimeData mime;
    mime.setUrls({QUrl::fromLocalFile(docsFolder())});
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    EXPECT_TRUE(enter.isAccepted());
    EXPECT_TRUE(highlight->isVisible());
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &drop);
    EXPECT_FALSE(highlight->isVisible());

    ASSERT_TRUE(waitUntil([&] { return store->docs().size() == 3 && allRead(); }));
    QApplication::processEvents();
    ASSERT_NE(window->review(), nullptr);
    EXPECT_EQ(window->review()->doc(), store->docs().first());
}

// The Review menu's shortcuts and the navigation bar's buttons step through the batch and approve, the
// shortcuts from inside a text box of the form too and not at all with an empty queue; the buttons
// follow the position and the approval of the shown document.
TEST_F(MainWindowTest, ShortcutsAndButtonsStepAndApprove)
{
    open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    QTest::keyClick(window.get(), Qt::Key_BracketRight, Qt::ControlModifier);
    EXPECT_EQ(store->selected(), nullptr);

    addAndWait({"1.pdf", "2.pdf", "3.pdf"});
    QTest::keyClick(window.get(), Qt::Key_BracketRight, Qt::ControlModifier);
    EXPECT_EQ(store->position(), "2 of 3");
    QTest::keyClick(window.get(), Qt::Key_BracketLeft, Qt::ControlModifier);
    EXPECT_EQ(store->position(), "1 of 3");
    QLineEdit *vendor = window->review()->formPane()->fieldEdit(QStringLiteral("vendor"));
    vendor->setFocus();
    QTest::keyClick(vendor, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(store->docs()[0]->approved());
    EXPECT_EQ(store->position(), "2 of 3");
    EXPECT_EQ(window->sidebar()->queueModel()->index(0).data(QueueModel::StatusTextRole), "Approved");

    EXPECT_TRUE(button("previous")->isEnabled());
    QTest::mouseClick(button("approve"), Qt::LeftButton);
    EXPECT_TRUE(store->docs()[1]->approved());
    EXPECT_EQ(store->position(), "2 of 3"); // "Approve" stays on the document
    EXPECT_FALSE(button("approve")->isVisible());
    QTest::mouseClick(button("undoApproval"), Qt::LeftButton);
    EXPECT_FALSE(store->docs()[1]->approved());
    QTest::mouseClick(button("approveAndNext"), Qt::LeftButton);
    EXPECT_TRUE(store->docs()[1]->approved());
    EXPECT_EQ(store->position(), "3 of 3");
    QApplication::processEvents();
    EXPECT_FALSE(button("next")->isEnabled());
}

// Every store message appears in an alert; dismissing it clears the message.
TEST_F(MainWindowTest, AlertShowsAndClearsStoreMessage)
{
    open();
    store->add(makeFiles({"notes.txt"}));
    ASSERT_TRUE(waitUntil([&] { return window->alert() && window->alert()->isVisible(); }));
    EXPECT_EQ(window->alert()->text(), store->alertText());
    QTest::mouseClick(window->alert()->buttons().first(), Qt::LeftButton);
    EXPECT_TRUE(waitUntil([&] { return store->alertText().isEmpty(); }));
}

// The window fits a 1366 × 768 laptop with a panel, opens within its screen whatever size is asked for,
// and comes back at the size and splitter positions a closed window had.
TEST_F(MainWindowTest, WindowFitsTheScreenAndRemembersItsLayout)
{
    open();
    const QSize minimum = window->minimumSizeHint();
    EXPECT_LE(minimum.width(), 1366 - 16);
    EXPECT_LE(minimum.height(), 768 - 32 - 48); // a panel and a title bar

    const QRect available = window->screen()->availableGeometry();
    window->restoreLayout(QSize(2160, 1350));
    EXPECT_LE(window->width(), std::max(available.width(), minimum.width()));
    EXPECT_LE(window->height(), std::max(available.height(), minimum.height()));
    EXPECT_EQ(MainWindow::fitted(QSize(2160, 1350), QRect(0, 0, 1366, 736)), QSize(1350, 688));
    EXPECT_EQ(MainWindow::fitted(QSize(900, 600), QRect(0, 0, 1366, 736)), QSize(900, 600));

    addAndWait({"1.pdf"});
    window->resize(MainWindow::fitted(minimum + QSize(40, 20), available).expandedTo(minimum));
    window->splitter()->setSizes({300, 600});
    QApplication::processEvents();
    const QSize size = window->size();
    const QList<int> panes = window->splitter()->sizes();
    ASSERT_TRUE(window->close());

    MainWindow again(*store);
    again.restoreLayout(QSize(2160, 1350));
    again.show();
    QApplication::processEvents();
    EXPECT_EQ(again.size(), size);
    EXPECT_EQ(again.splitter()->sizes(), panes);
}

// Texts written for macOS name this computer and Ctrl elsewhere, and stay as written on macOS.
TEST(PlatformTextTest, NamesTheRunningPlatform)
{
    const QString text = QStringLiteral("Runs offline on this Mac. Next document (\u2318])");
    EXPECT_EQ(PlatformText::adapt(text, true), text);
    EXPECT_EQ(PlatformText::adapt(text, false), "Runs offline on this computer. Next document (Ctrl+])");
}

// A button that disables or hides itself leaves focus on the form, where Space neither hides the
// outlines (after "Approve") nor clears the batch (after "Approve all ready").
TEST_F(MainWindowTest, FocusAfterASelfDisablingButtonIsHarmless)
{
    open(1, &answers);
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    addAndWait({"1.pdf", "2.pdf", "3.pdf"});
    clickThenSpace(button("approve"));
    EXPECT_EQ(QApplication::focusWidget(), window->review()->formPane());
    EXPECT_TRUE(window->review()->documentPane()->showOutlines());

    store->move(+1);
    // Copies of one invoice are left out of "Approve all ready": these are told apart.
    for (int i : {1, 2})
        store->docs()[i]->editField("number", QString("INV-%1").arg(i));
    clickThenSpace(summaryButton("Approve all ready"));
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
// when declined; "Clear" asks while the batch holds work, and once accepted the empty states return.
TEST_F(MainWindowTest, WindowAsksBeforeLosingWork)
{
    open(1, &answers);
    addAndWait({"1.pdf"});
    store->docs()[0]->setApproved(true);
    EXPECT_FALSE(window->close());
    EXPECT_EQ(answers.asked, QStringList({"Quit without exporting?"}));
    answers.answer = true;
    QTest::mouseClick(summaryButton("Clear"), Qt::LeftButton);
    QApplication::processEvents();
    EXPECT_EQ(answers.asked.size(), 2);
    EXPECT_TRUE(store->docs().isEmpty());
    EXPECT_FALSE(window->sidebar()->queueView()->isVisible());
    EXPECT_TRUE(window->sidebar()->findChild<QLabel *>(QStringLiteral("noTotals"))->isVisible());
    EXPECT_EQ(window->review(), nullptr);
    EXPECT_TRUE(window->close());
}

// The File menu opens, exports and quits by Ctrl+Q through the window's own question; at 150 % on a
// 1366 × 768 screen (about 910 × 480 available) the content asks for no more than the screen leaves.
TEST_F(MainWindowTest, FileMenuAndSmallScreens)
{
    open(1, &answers);
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    auto *file = window->findChild<QMenu *>(QStringLiteral("fileMenu"));
    ASSERT_NE(file, nullptr);
    for (const char *name : {"open", "exportCSV", "exportJSON", "exportXLSX", "quit"})
        EXPECT_NE(window->findChild<QAction *>(name), nullptr) << name;
    addAndWait({"1.pdf"});
    store->docs()[0]->setApproved(true);
    QTest::keyClick(window.get(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(answers.asked, QStringList({"Quit without exporting?"}));
    EXPECT_TRUE(window->isVisible());

    const QSize least = MainWindow::contentMinimum(QRect(0, 0, 910, 480), QSize(16, 48 + 60));
    EXPECT_LE(least.width(), 910 - 16);
    EXPECT_LE(least.height(), 480 - 48 - 60);
    EXPECT_EQ(MainWindow::contentMinimum(QRect(0, 0, 1920, 1050), QSize(16, 108)), QSize(760, 480));
}

} // namespace
