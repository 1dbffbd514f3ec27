#include "UiTestSupport.h"

#include "ui/DialogStoreUi.h"

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>

namespace {

class ExportTest : public UiTest {
protected:
    void SetUp() override
    {
        UiTest::SetUp();
        open(1, &dialogs);
        dialogs.setWindow(window.get());
        addAndWait({"invoice.pdf"});
        store->approveAllReady();
    }

    /// Answers the next file dialog that opens: notes the name it proposes and saves to `name` in the
    /// documents folder.
    void answerSaveDialog(const QString &name)
    {
        auto *timer = new QTimer(window.get());
        timer->setInterval(10);
        QObject::connect(timer, &QTimer::timeout, [this, timer, name] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            timer->stop();
            timer->deleteLater();
            proposed = dialog->selectedFiles().value(0);
            // Typed into the name box as a person would; the dialog may still be listing its folder.
            auto *nameBox = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
            ASSERT_NE(nameBox, nullptr);
            nameBox->setText(docsFolder() + "/" + name);
            static_cast<QDialog *>(dialog)->accept();
        });
        timer->start();
    }

    void trigger(const char *action) { window->findChild<QAction *>(QString::fromLatin1(action))->trigger(); }

    QByteArray read(const QString &name)
    {
        QFile file(docsFolder() + "/" + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    DialogStoreUi dialogs;
    QString proposed;
};

// Each export command asks where to save through a file dialog, proposing its own name, and writes
// the approved document there in its format.
TEST_F(ExportTest, ExportsThroughTheSaveDialog)
{
    struct Case {
        const char *action, *proposedName, *savedAs;
        QByteArray start;
    };
    const Case cases[] = {
        {"exportCSV", "tabrix-documents.csv", "out.csv", "\xEF\xBB\xBF"},
        {"exportJSON", "tabrix-export.json", "out.json", "["},
        {"exportXLSX", "tabrix-export.xlsx", "out.xlsx", "PK"},
    };
    for (const Case &c : cases) {
        answerSaveDialog(QString::fromLatin1(c.savedAs));
        trigger(c.action);
        EXPECT_EQ(QFileInfo(proposed).fileName(), c.proposedName);
        const QByteArray written = read(QString::fromLatin1(c.savedAs));
        EXPECT_TRUE(written.startsWith(c.start)) << c.action;
        EXPECT_TRUE(store->alertText().isEmpty()) << store->alertText().toStdString();
    }
    EXPECT_TRUE(read("out.csv").contains("16.50"));

    // The Rows picker switches CSV to one row per line item, with its own proposed name.
    auto *rows = window->findChild<QComboBox *>(QStringLiteral("rowsPicker"));
    ASSERT_EQ(rows->count(), 2);
    EXPECT_EQ(rows->itemText(0), "One row per document");
    EXPECT_EQ(rows->itemText(1), "One row per line item");
    rows->setCurrentIndex(1);
    EXPECT_EQ(store->layout(), RowLayout::perLineItem);
    answerSaveDialog("items.csv");
    trigger("exportCSV");
    EXPECT_EQ(QFileInfo(proposed).fileName(), "tabrix-line-items.csv");
    EXPECT_TRUE(read("items.csv").contains("Widget"));
}

} // namespace
