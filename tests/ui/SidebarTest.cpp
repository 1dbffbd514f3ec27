#include "UiTestSupport.h"

#include "ui/BatchSummaryView.h"
#include "ui/Theme.h"

namespace {

// The counts line: singular for one file, the failed and doubtful parts only when there are such.
TEST(BatchSummaryTest, CountsText)
{
    const QString dot = QStringLiteral(" \u00B7 ");
    EXPECT_EQ(BatchSummaryView::countsText(4, 3, 1, 1, 2),
              "4 files" + dot + "3 ready" + dot + "1 approved" + dot + "1 failed" + dot + "2 to check");
    EXPECT_EQ(BatchSummaryView::countsText(1, 1, 0, 0), "1 file" + dot + "1 ready" + dot + "0 approved");
}

// Queue rows: the icon by extension, a tint per state, the amount only for ready
// documents whose total parses.
TEST(QueueModelTest, RowTextsAndTints)
{
    DocItem pdf(QStringLiteral("/x/Scan.PDF")), photo(QStringLiteral("/x/receipt.jpg"));
    EXPECT_EQ(QueueModel::iconName(pdf), "doc.text");
    EXPECT_EQ(QueueModel::iconName(photo), "photo");
    pdf.setFields({valueField("currency", "EUR"), valueField("total", "1234.5")});
    EXPECT_EQ(QueueModel::tint(pdf), Theme::accent()); // queued, not ready yet
    EXPECT_EQ(QueueModel::amountText(pdf), QString());
    pdf.setStatus(DocStatus::Ready);
    EXPECT_EQ(QueueModel::tint(pdf), Theme::blue());
    EXPECT_EQ(QueueModel::amountText(pdf), "EUR " + Money::pretty(1234.5));
    pdf.setApproved(true);
    pdf.setFields({valueField("total", "n/a")});
    EXPECT_EQ(QueueModel::tint(pdf), Theme::green());
    EXPECT_EQ(QueueModel::amountText(pdf), QString());
    photo.setFields({valueField("total", "9.99")});
    photo.setStatus(DocStatus::failed(QStringLiteral("Damaged file")));
    EXPECT_EQ(QueueModel::tint(photo), Theme::red());
    EXPECT_EQ(QueueModel::amountText(photo), QString());
}

class SidebarTest : public UiTest {};

// Removing the selected document from its context menu moves the selection and keeps the list in step.
TEST_F(SidebarTest, RemoveSelectedFromContextMenu)
{
    open();
    addAndWait({"1.pdf", "2.pdf", "3.pdf"});
    store->move(+1);
    const DocPtr third = store->docs()[2];
    QListView *list = window->sidebar()->queueView();
    EXPECT_EQ(list->currentIndex().row(), 1);

    QTimer::singleShot(0, [&] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        menu->actions().last()->trigger();
        menu->close();
    });
    emit list->customContextMenuRequested(list->visualRect(list->model()->index(1, 0)).center());

    ASSERT_EQ(store->docs().size(), 2);
    EXPECT_EQ(store->selected(), third);
    EXPECT_EQ(list->currentIndex().row(), 1);
    EXPECT_EQ(window->review()->doc(), third);
}

// Two ready documents with the same vendor, number and total are marked in the queue, counted in the
// summary and warned about in the form; the warning leaves its space when it goes, so the form stays put.
TEST_F(SidebarTest, DuplicatesAreMarkedEverywhere)
{
    open();
    addAndWait({"1.pdf", "2.pdf"}); // both read as the same invoice
    const QueueModel *model = window->sidebar()->queueModel();
    EXPECT_TRUE(model->index(1).data(QueueModel::DuplicateRole).toBool());
    EXPECT_TRUE(window->sidebar()->findChild<QLabel *>(QStringLiteral("duplicates"))->isVisible());
    FormPane *form = window->review()->formPane();
    auto *warning = form->findChild<QWidget *>(QStringLiteral("duplicateWarning"));
    EXPECT_TRUE(warning->isVisible());
    const int shownAt = form->fieldEdit("vendor")->mapTo(form, QPoint()).y();

    store->docs()[1]->editField("number", "INV-2002");
    QApplication::processEvents();
    EXPECT_FALSE(model->index(0).data(QueueModel::DuplicateRole).toBool());
    EXPECT_FALSE(window->sidebar()->findChild<QLabel *>(QStringLiteral("duplicates"))->isVisible());
    EXPECT_FALSE(warning->isVisible());
    EXPECT_EQ(form->fieldEdit("vendor")->mapTo(form, QPoint()).y(), shownAt);
}

} // namespace
