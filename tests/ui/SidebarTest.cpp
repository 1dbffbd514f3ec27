#include "UiTestSupport.h"

#include "model/Money.h"
#include "ui/BatchSummaryView.h"
#include "ui/FormPane.h"
#include "ui/QueueModel.h"
#include "ui/ReviewView.h"
#include "ui/SidebarView.h"
#include "ui/Theme.h"

#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QTimer>

namespace {

Field value(const QString &key, const QString &text)
{
    Field f = emptyField(key, key);
    f.value = text;
    f.confidence = 0.9;
    return f;
}

// The counts line: singular for one file, the failed part only when something failed.
TEST(BatchSummaryTest, CountsText)
{
    EXPECT_EQ(BatchSummaryView::countsText(4, 3, 1, 1),
              "4 files \u00B7 3 ready \u00B7 1 approved \u00B7 1 failed");
    EXPECT_EQ(BatchSummaryView::countsText(1, 1, 0, 0), "1 file \u00B7 1 ready \u00B7 0 approved");
    EXPECT_EQ(BatchSummaryView::countsText(0, 0, 0, 0), "0 files \u00B7 0 ready \u00B7 0 approved");
    EXPECT_EQ(BatchSummaryView::duplicatesText(2), "2 likely duplicates (same vendor, number and total)");
}

// Queue rows: status text and tint per state, the amount only for ready documents whose total parses.
TEST(QueueModelTest, RowTextsAndTints)
{
    DocItem pdf(QStringLiteral("/x/Scan.PDF")), photo(QStringLiteral("/x/receipt.jpg"));
    EXPECT_EQ(QueueModel::iconName(pdf), "doc.text");
    EXPECT_EQ(QueueModel::iconName(photo), "photo");
    EXPECT_EQ(QueueModel::statusText(pdf), "Waiting");
    EXPECT_EQ(QueueModel::tint(pdf), Theme::accent());

    pdf.setFields({value("currency", "EUR"), value("total", "1234.5")});
    pdf.setStatus(DocStatus::Extracting);
    EXPECT_EQ(QueueModel::amountText(pdf), ""); // not ready yet
    pdf.setStatus(DocStatus::Ready);
    EXPECT_EQ(QueueModel::statusText(pdf), "Ready for review");
    EXPECT_EQ(QueueModel::tint(pdf), Theme::blue());
    EXPECT_EQ(QueueModel::amountText(pdf), "EUR " + Money::pretty(1234.5));
    pdf.setApproved(true);
    EXPECT_EQ(QueueModel::statusText(pdf), "Approved");
    EXPECT_EQ(QueueModel::tint(pdf), Theme::green());
    pdf.setFields({value("total", "n/a")});
    EXPECT_EQ(QueueModel::amountText(pdf), "");

    photo.setFields({value("total", "9.99")});
    photo.setStatus(DocStatus::failed(QStringLiteral("Damaged file")));
    EXPECT_EQ(QueueModel::statusText(photo), "Failed: Damaged file");
    EXPECT_EQ(QueueModel::tint(photo), Theme::red());
    EXPECT_EQ(QueueModel::amountText(photo), "");
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

    QStringList offered;
    QTimer::singleShot(0, [&] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        for (QAction *action : menu->actions())
            offered.append(action->text());
        menu->actions().last()->trigger();
        menu->close();
    });
    const QRect row = list->visualRect(list->model()->index(1, 0));
    emit list->customContextMenuRequested(row.center());

    EXPECT_EQ(offered, QStringList({"Re-read this file", "Remove from queue"}));
    ASSERT_EQ(store->docs().size(), 2);
    EXPECT_EQ(store->selected(), third);
    EXPECT_EQ(list->currentIndex().row(), 1);
    EXPECT_EQ(window->review()->doc(), third);
}

// Clearing the batch brings back the empty queue and the empty review side.
TEST_F(SidebarTest, ClearShowsEmptyStates)
{
    open();
    addAndWait({"1.pdf"});
    auto *counts = window->sidebar()->findChild<QLabel *>(QStringLiteral("counts"));
    EXPECT_EQ(counts->text(), "1 file \u00B7 1 ready \u00B7 0 approved");
    EXPECT_FALSE(window->sidebar()->queueView()->isHidden());
    store->clearAll();
    QApplication::processEvents();
    EXPECT_FALSE(window->sidebar()->queueView()->isVisible());
    EXPECT_EQ(window->review(), nullptr);
    EXPECT_EQ(counts->text(), "0 files \u00B7 0 ready \u00B7 0 approved");
    EXPECT_TRUE(window->sidebar()->findChild<QLabel *>(QStringLiteral("noTotals"))->isVisible());
}

// Two ready documents with the same vendor, number and total are marked in the queue, counted in the
// summary and warned about in the form.
TEST_F(SidebarTest, DuplicatesAreMarkedEverywhere)
{
    open();
    addAndWait({"1.pdf", "2.pdf"});
    auto *dupLabel = window->sidebar()->findChild<QLabel *>(QStringLiteral("duplicates"));
    store->docs()[0]->setFields({value("vendor", "Acme"), value("number", "42"), value("total", "10")});
    store->docs()[1]->setFields({value("vendor", "Acme"), value("number", "43"), value("total", "10.00")});
    QApplication::processEvents();
    EXPECT_FALSE(dupLabel->isVisible());
    store->docs()[1]->setFields({value("vendor", "acme "), value("number", "42"), value("total", "10.00")});
    QApplication::processEvents();
    const QueueModel *model = window->sidebar()->queueModel();
    EXPECT_TRUE(model->index(0).data(QueueModel::DuplicateRole).toBool());
    EXPECT_TRUE(model->index(1).data(QueueModel::DuplicateRole).toBool());
    EXPECT_TRUE(dupLabel->isVisible());
    EXPECT_EQ(dupLabel->text(), "2 likely duplicates (same vendor, number and total)");
    EXPECT_TRUE(window->review()->findChild<QWidget *>(QStringLiteral("duplicateWarning"))->isVisible());

    store->docs()[1]->setFields({value("vendor", "Acme"), value("number", "43"), value("total", "10.00")});
    QApplication::processEvents();
    EXPECT_FALSE(model->index(0).data(QueueModel::DuplicateRole).toBool());
    EXPECT_FALSE(window->review()->findChild<QWidget *>(QStringLiteral("duplicateWarning"))->isVisible());
}

} // namespace
