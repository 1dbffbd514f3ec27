#pragma once

#include "store/Store.h"
#include "support/TestSupport.h"
#include "ui/MainWindow.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>
#include <memory>

/// The text lines of a small invoice, one per row down the page.
inline QList<TextLine> invoiceLines(int page = 0)
{
    const QStringList texts = {"Acme Supplies Ltd",
                               "Invoice No: INV-1001",
                               "Date: 2024-03-05",
                               "Description  Qty  Unit Price  Amount",
                               "Widget  2  5.00  10.00",
                               "Gadget  1  5.00  5.00",
                               "Subtotal  15.00",
                               "Tax  1.50",
                               "Total  16.50"};
    QList<TextLine> lines;
    for (qsizetype i = 0; i < texts.size(); ++i)
        lines.append(TextLine{texts[i], QRectF(0.08, 0.06 + 0.05 * i, 0.6, 0.03), page});
    return lines;
}

/// A loader that reads no file: every file becomes `pages` blank letter-size pages holding the small
/// invoice; a file named "broken.*" fails with "Damaged file".
inline Processing::Loader fakeLoader(int pages = 1)
{
    return [pages](const QString &path, const Pipeline::Report &report) -> Expected<QList<PagePtr>> {
        if (QFileInfo(path).baseName() == QLatin1String("broken"))
            return TabrixError{QStringLiteral("Damaged file")};
        QList<PagePtr> result;
        for (int p = 0; p < pages; ++p) {
            report(DocStatus::Reading, 0.02 + 0.9 * p / pages);
            auto page = std::make_shared<PageData>();
            page->image = QImage(425, 550, QImage::Format_Grayscale8);
            page->image.fill(Qt::white);
            if (p == 0)
                page->lines = invoiceLines(p);
            result.append(page);
        }
        return result;
    };
}

/// A store wired to the fake loader with its data in a temporary folder, and the main window over it.
class UiTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_temp.isValid());
        QDir(m_temp.path()).mkpath(QStringLiteral("data"));
        QDir(m_temp.path()).mkpath(QStringLiteral("docs"));
        // The window's remembered layout goes to the temporary folder, never the user's settings.
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           m_temp.filePath(QStringLiteral("settings")));
    }

    /// Creates the store and window; `pages` per document; `pages` 0 reads the files for real.
    void open(int pages = 1, StoreUi *ui = nullptr)
    {
        StoreOptions options;
        options.dataFolder = m_temp.filePath(QStringLiteral("data"));
        if (pages > 0)
            options.loader = fakeLoader(pages);
        options.ui = ui;
        store = std::make_unique<Store>(options);
        window = std::make_unique<MainWindow>(*store);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        QApplication::setActiveWindow(window.get());
    }

    void TearDown() override
    {
        window.reset();
        store.reset();
    }

    /// Empty files in the documents folder (the fake loader never reads them); returns their paths.
    QStringList makeFiles(const QStringList &names)
    {
        QStringList paths;
        for (const QString &name : names) {
            const QString path = docsFolder() + QLatin1Char('/') + name;
            QDir().mkpath(QFileInfo(path).absolutePath());
            QFile file(path);
            EXPECT_TRUE(file.open(QIODevice::WriteOnly));
            paths.append(path);
        }
        return paths;
    }

    QString docsFolder() const { return m_temp.filePath(QStringLiteral("docs")); }
    QString dataFolder() const { return m_temp.filePath(QStringLiteral("data")); }

    /// Adds the files and waits until every document is ready or failed.
    void addAndWait(const QStringList &names)
    {
        store->add(makeFiles(names));
        ASSERT_TRUE(waitUntil([&] {
            for (const DocPtr &d : store->docs()) {
                const auto kind = d->status().kind();
                if (kind != DocStatus::Ready && kind != DocStatus::Failed)
                    return false;
            }
            return !store->docs().isEmpty();
        }));
        QApplication::processEvents();
    }

    std::unique_ptr<Store> store;
    std::unique_ptr<MainWindow> window;

private:
    QTemporaryDir m_temp;
};
