#include "UiTestSupport.h"

#include "ui/DropHighlight.h"
#include "ui/FormPane.h"
#include "ui/QueueModel.h"
#include "ui/ReviewView.h"
#include "ui/SidebarView.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QToolButton>

namespace {

class MainWindowTest : public UiTest {};

QStringList statusTexts(const SidebarView &sidebar)
{
    QStringList texts;
    const QueueModel *model = sidebar.queueModel();
    for (int row = 0; row < model->rowCount(); ++row)
        texts.append(model->index(row).data(QueueModel::StatusTextRole).toString());
    return texts;
}

// A folder dropped on a text box deep inside the window is taken by the window: the highlight shows
// while it hovers, and its supported files are read until they are ready for review.
TEST_F(MainWindowTest, DroppedFolderIsReadUntilReady)
{
    open();
    makeFiles({"b.pdf", "a.png", "notes.txt", "sub/c.tiff"});
    QWidget *target = window->findChild<QPushButton *>(QStringLiteral("chooseFiles"));
    ASSERT_NE(target, nullptr);
    auto *highlight = window->findChild<DropHighlight *>();

    QMimeData mime;
    mime.setUrls({QUrl::fromLocalFile(docsFolder())});
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    EXPECT_TRUE(enter.isAccepted());
    EXPECT_TRUE(store->isTargeted());
    EXPECT_TRUE(highlight->isVisible());

    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &drop);
    EXPECT_FALSE(store->isTargeted());
    EXPECT_FALSE(highlight->isVisible());

    ASSERT_TRUE(waitUntil([&] {
        return statusTexts(*window->sidebar()) ==
               QStringList({"Ready for review", "Ready for review", "Ready for review"});
    }));
    QStringList names;
    for (const DocPtr &d : store->docs())
        names.append(d->fileName());
    EXPECT_EQ(names, QStringList({"a.png", "b.pdf", "c.tiff"}));
    // The first document is selected and reviewed beside its page.
    ASSERT_NE(window->review(), nullptr);
    EXPECT_EQ(window->review()->doc(), store->docs().first());
    EXPECT_NE(window->review()->formPane(), nullptr);
}

// A drag without files (plain text) is not offered to the store and shows no highlight.
TEST_F(MainWindowTest, TextDragIsNotADrop)
{
    open();
    QMimeData mime;
    mime.setText(QStringLiteral("hello"));
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window->centralWidget(), &enter);
    EXPECT_FALSE(store->isTargeted());
}

// The Review menu's shortcuts step through the batch and approve; with an empty queue they do nothing.
TEST_F(MainWindowTest, ShortcutsStepAndApprove)
{
    open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    QTest::keyClick(window.get(), Qt::Key_BracketRight, Qt::ControlModifier);
    EXPECT_EQ(store->selected(), nullptr);

    addAndWait({"1.pdf", "2.pdf", "3.pdf"});
    EXPECT_EQ(store->position(), "1 of 3");
    QTest::keyClick(window.get(), Qt::Key_BracketRight, Qt::ControlModifier);
    EXPECT_EQ(store->position(), "2 of 3");
    QTest::keyClick(window.get(), Qt::Key_BracketRight, Qt::ControlModifier);
    QTest::keyClick(window.get(), Qt::Key_BracketRight, Qt::ControlModifier);
    EXPECT_EQ(store->position(), "3 of 3");
    QTest::keyClick(window.get(), Qt::Key_BracketLeft, Qt::ControlModifier);
    QTest::keyClick(window.get(), Qt::Key_BracketLeft, Qt::ControlModifier);
    EXPECT_EQ(store->position(), "1 of 3");

    // Approve and Next works from inside a text box of the form too.
    QApplication::processEvents();
    QLineEdit *vendor = window->review()->formPane()->fieldEdit(QStringLiteral("vendor"));
    ASSERT_NE(vendor, nullptr);
    vendor->setFocus();
    QTest::keyClick(vendor, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(store->docs()[0]->approved());
    EXPECT_EQ(store->position(), "2 of 3");
    EXPECT_EQ(window->sidebar()->queueModel()->index(0).data(QueueModel::StatusTextRole), "Approved");
}

// The navigation bar's buttons follow the position and the approval of the shown document.
TEST_F(MainWindowTest, NavBarApprovesAndUndoes)
{
    open();
    addAndWait({"1.pdf", "2.pdf"});
    auto button = [&](const char *name) {
        return window->review()->findChild<QPushButton *>(QString::fromLatin1(name));
    };
    EXPECT_FALSE(button("previous")->isEnabled());
    EXPECT_TRUE(button("next")->isEnabled());
    QTest::mouseClick(button("approve"), Qt::LeftButton);
    EXPECT_TRUE(store->docs()[0]->approved());
    EXPECT_EQ(store->position(), "1 of 2"); // "Approve" stays on the document
    EXPECT_TRUE(button("undoApproval")->isVisible());
    EXPECT_FALSE(button("approve")->isVisible());
    QTest::mouseClick(button("undoApproval"), Qt::LeftButton);
    EXPECT_FALSE(store->docs()[0]->approved());
    QTest::mouseClick(button("approveAndNext"), Qt::LeftButton);
    EXPECT_TRUE(store->docs()[0]->approved());
    EXPECT_EQ(store->position(), "2 of 2");
    QApplication::processEvents();
    EXPECT_FALSE(button("next")->isEnabled());
}

// Every store message appears in an alert titled "Tabrix"; dismissing it clears the message.
TEST_F(MainWindowTest, AlertShowsAndClearsStoreMessage)
{
    open();
    store->add(makeFiles({"notes.txt"}));
    ASSERT_TRUE(waitUntil([&] { return window->alert() && window->alert()->isVisible(); }));
    EXPECT_EQ(window->alert()->windowTitle(), "Tabrix");
    EXPECT_EQ(window->alert()->text(),
              "No supported files found. Tabrix reads PDF, PNG, JPEG, HEIC and TIFF files.");
    ASSERT_EQ(window->alert()->buttons().size(), 1);
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
    const QList<int> sides = window->splitter()->sizes();
    const QSize size = window->size();
    ASSERT_TRUE(window->close());

    MainWindow again(*store);
    again.restoreLayout(QSize(2160, 1350));
    again.show();
    QApplication::processEvents();
    EXPECT_EQ(again.size(), size);
    EXPECT_EQ(again.splitter()->sizes(), sides);
}

} // namespace
