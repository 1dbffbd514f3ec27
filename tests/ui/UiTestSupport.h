#pragma once

#include "model/Money.h"
#include "store/Store.h"
#include "support/TestSupport.h"
#include "ui/DocumentPane.h"
#include "ui/FormPane.h"
#include "ui/MainWindow.h"
#include "ui/QueueModel.h"
#include "ui/ReviewView.h"
#include "ui/SidebarView.h"

#include <QtWidgets> // the tests reach into most of the window's widgets
#include <gtest/gtest.h>
#include <memory>

/// A field holding `value`, read with `confidence`.
inline Field valueField(const QString &key, const QString &value, double confidence = 0.9,
                        std::optional<PageBox> box = {}, bool edited = false)
{
    return Field{key, key, value, confidence, edited, box, false, {}};
}

/// A loader that reads no file: every file becomes `pages` blank pages, the first holding a small
/// invoice (subtotal 15.00, tax 1.50, total 16.50, two items); a file named "broken.*" fails.
inline Processing::Loader fakeLoader(int pages)
{
    return [pages](const QString &path, const Pipeline::Report &) -> Expected<QList<PagePtr>> {
        if (QFileInfo(path).baseName() == QLatin1String("broken"))
            return TabrixError{QStringLiteral("Damaged file")};
        const QStringList texts = QString("Acme Supplies Ltd\nInvoice No: INV-1001\nDate: 2024-03-05\n"
                                          "Description  Qty  Unit Price  Amount\nWidget  2  5.00  10.00\n"
                                          "Gadget  1  5.00  5.00\nSubtotal  15.00\nTax  1.50\nTotal  16.50")
                                      .split('\n');
        QList<PagePtr> result;
        for (int p = 0; p < pages; ++p) {
            auto page = std::make_shared<PageData>();
            page->image = QImage(425, 550, QImage::Format_Grayscale8);
            page->image.fill(Qt::white);
            for (qsizetype i = 0; p == 0 && i < texts.size(); ++i)
                page->lines.append(TextLine{texts[i], QRectF(0.08, 0.06 + 0.05 * i, 0.6, 0.03), 0});
            result.append(page);
        }
        return result;
    };
}

/// Answers every question with `answer` and notes it; the open dialog answers `openPath`, the others cancel.
struct Answers : StoreUi {
    bool answer = false;
    QStringList asked;
    QString openPath;

    QStringList chooseFilesAndFolders(const QString &) override { return {}; }
    QString chooseFileToOpen(const QString &) override { return openPath; }
    QString chooseFileToSave(const QString &, const QString &) override { return {}; }
    void setClipboardText(const QString &) override {}
    bool confirm(const QString &question, const QString &, const QString &) override
    {
        asked.append(question);
        return answer;
    }
};

/// A store wired to the fake loader with its data in a temporary folder, and the main window over it.
class UiTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_temp.isValid());
        ASSERT_TRUE(QDir(m_temp.path()).mkpath(QStringLiteral("docs")));
        // The window's remembered layout goes to the temporary folder, never the user's settings.
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_temp.filePath("settings"));
    }

    /// Creates the store and window; `pages` per document; the batch kept in `batchFile` when given.
    void open(int pages = 1, StoreUi *ui = nullptr, const QString &batchFile = {})
    {
        store =
            std::make_unique<Store>(StoreOptions{m_temp.filePath("data"), fakeLoader(pages), ui, batchFile});
        window = std::make_unique<MainWindow>(*store);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        QApplication::setActiveWindow(window.get());
    }

    /// Empty files in the documents folder (the fake loader never reads them); returns their paths.
    QStringList makeFiles(const QStringList &names)
    {
        QStringList paths;
        for (const QString &name : names) {
            paths.append(docsFolder() + '/' + name);
            EXPECT_TRUE(QDir().mkpath(QFileInfo(paths.last()).path())) << name.toStdString();
            EXPECT_TRUE(writeFile(paths.last(), {})) << name.toStdString();
        }
        return paths;
    }

    QString docsFolder() const { return m_temp.filePath(QStringLiteral("docs")); }

    /// Whether the batch holds documents and each is ready or failed.
    bool allRead() const
    {
        const auto read = [](const DocPtr &d) { return d->status().kind() >= DocStatus::Ready; }; // or Failed
        return !store->docs().isEmpty() && std::all_of(store->docs().cbegin(), store->docs().cend(), read);
    }

    /// Adds the files and waits until every document is ready or failed.
    void addAndWait(const QStringList &names)
    {
        store->add(makeFiles(names));
        ASSERT_TRUE(waitUntil([&] { return allRead(); }));
        QApplication::processEvents();
    }

private:
    QTemporaryDir m_temp; // declared first: the window and store go before their folder

protected:
    std::unique_ptr<Store> store;
    std::unique_ptr<MainWindow> window;
};
