#include "UiTestSupport.h"

#include "ui/DialogStoreUi.h"

namespace {

/// The desktop's real dialogs over the window, answered by the test once they are open.
class DialogsTest : public UiTest {
protected:
    void SetUp() override
    {
        UiTest::SetUp();
        open(1, &dialogs);
        dialogs.setWindow(window.get());
    }

    /// Calls `answer` with the next modal dialog of type D once it is open.
    template <class D> void onNextDialog(const std::function<void(D *)> &answer)
    {
        auto *timer = new QTimer(window.get());
        QObject::connect(timer, &QTimer::timeout, [timer, answer] {
            if (auto *dialog = qobject_cast<D *>(QApplication::activeModalWidget())) {
                timer->stop();
                timer->deleteLater();
                answer(dialog);
            }
        });
        timer->start(10);
    }

    DialogStoreUi dialogs;
};

// "Choose Files…" opens a chooser that takes files and folders at once: a folder selected with "Open"
// is added rather than entered.
TEST_F(DialogsTest, ChooserTakesFilesAndFolders)
{
    makeFiles({"a.pdf", "b.pdf", "sub/c.png", "sub/d.png"});
    onNextDialog<QFileDialog>([&](QFileDialog *dialog) {
        dialog->setDirectory(docsFolder());
        auto *view = dialog->findChild<QListView *>(QStringLiteral("listView"));
        // a.pdf, b.pdf and the folder "sub"; all but b.pdf are chosen.
        ASSERT_TRUE(waitUntil([&] { return view->model()->rowCount(view->rootIndex()) == 3; }));
        for (int row = 0; row < 3; ++row) {
            const QModelIndex index = view->model()->index(row, 0, view->rootIndex());
            if (index.data().toString() != "b.pdf")
                view->selectionModel()->select(index,
                                               QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }
        static_cast<QDialog *>(dialog)->accept();
    });
    QTest::mouseClick(window->findChild<QPushButton *>(QStringLiteral("chooseFiles")), Qt::LeftButton);
    QStringList added;
    for (const DocPtr &d : store->docs())
        added.append(d->fileName());
    added.sort();
    EXPECT_EQ(added, QStringList({"a.pdf", "c.png", "d.png"}));
}

// Each export command asks where to save through a file dialog proposing its own name (per row layout
// for CSV), and writes the approved document there in its format.
TEST_F(DialogsTest, ExportsThroughTheSaveDialog)
{
    addAndWait({"invoice.pdf"});
    store->approveAllReady();
    // rows: the Rows picker's index (per document, per line item); start: how the saved file begins
    // clang-format off
    const struct { int rows; const char *action, *proposedName, *savedAs; QByteArray start; } cases[] = {
        {0, "exportCSV", "tabrix-documents.csv", "out.csv", "\xEF\xBB\xBF"},
        {0, "exportJSON", "tabrix-export.json", "out.json", "["},
        {0, "exportXLSX", "tabrix-export.xlsx", "out.xlsx", "PK"},
        {1, "exportCSV", "tabrix-line-items.csv", "items.csv", "\xEF\xBB\xBF"},
    };
    // clang-format on
    for (const auto &c : cases) {
        SCOPED_TRACE(c.savedAs);
        window->findChild<QComboBox *>(QStringLiteral("rowsPicker"))->setCurrentIndex(c.rows);
        const QString saved = docsFolder() + "/" + c.savedAs;
        QString proposed;
        onNextDialog<QFileDialog>([&](QFileDialog *dialog) {
            proposed = dialog->selectedFiles().value(0);
            // Typed into the name box as a person would; the dialog may still be listing its folder.
            dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(saved);
            static_cast<QDialog *>(dialog)->accept();
        });
        window->findChild<QAction *>(c.action)->trigger();
        EXPECT_EQ(QFileInfo(proposed).fileName(), c.proposedName);
        EXPECT_TRUE(readFile(saved).startsWith(c.start));
    }
}

// The desktop's question defaults to keeping the work: Return declines.
TEST_F(DialogsTest, QuestionDefaultsToCancel)
{
    addAndWait({"1.pdf"});
    store->approveAllReady();
    onNextDialog<QMessageBox>([&](QMessageBox *box) { QTest::keyClick(box, Qt::Key_Return); });
    store->clearAllAsking();
    EXPECT_EQ(store->docs().size(), 1);
}

} // namespace
