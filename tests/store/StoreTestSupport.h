#pragma once

#include "store/Store.h"
#include "support/TestSupport.h"

#include <QFileInfo>
#include <QMutex>
#include <QTemporaryDir>
#include <QWaitCondition>
#include <gtest/gtest.h>

/// A loader standing in for the intake pipeline: a file holding "!message" fails with that message,
/// any other file gives one page with a text line per line of the file. hold() makes every run wait at
/// its start until step() lets the next one go or release() all. Thread-safe; copies share their state.
class FakeLoader {
    struct State {
        QMutex mutex;
        QWaitCondition wake;
        int permits = -1;  ///< runs that may still start; -1: any number
        QStringList calls; ///< file names in the order their runs started
        Pipeline::Report lastReport;
    };
    std::shared_ptr<State> s = std::make_shared<State>();
    void allow(int runs)
    {
        QMutexLocker lock(&s->mutex);
        s->permits = runs;
        s->wake.wakeAll();
    }

public:
    void hold() { allow(0); }
    void step() { allow(1); }
    void release() { allow(-1); }
    QStringList calls() const
    {
        QMutexLocker lock(&s->mutex);
        return s->calls;
    }
    /// The progress callback of the latest run, still callable after that run ended.
    Pipeline::Report lastReport() const
    {
        QMutexLocker lock(&s->mutex);
        return s->lastReport;
    }

    Processing::Loader loader() const
    {
        return [s = s](const QString &path, const Pipeline::Report &report) -> Expected<QList<PagePtr>> {
            QMutexLocker lock(&s->mutex);
            s->calls.append(QFileInfo(path).fileName());
            s->lastReport = report;
            while (s->permits == 0)
                s->wake.wait(&s->mutex);
            s->permits -= s->permits > 0;
            const QString text = QString::fromUtf8(readFile(path));
            if (text.startsWith(u'!'))
                return TabrixError{text.mid(1)};
            auto page = std::make_shared<PageData>();
            for (const QString &line : text.split(u'\n', Qt::SkipEmptyParts))
                page->lines.append(
                    TextLine{line, QRectF(0.1, 0.05 + 0.04 * page->lines.size(), 0.5, 0.03), 0});
            return QList<PagePtr>{page};
        };
    }
};

/// Dialog answers prepared by the test; the clipboard is a string; questions are noted and answered
/// with `answer`.
struct FakeUi : StoreUi {
    QStringList chosen, asked;
    QString openAnswer, saveAnswer, clipboard, proposedName;
    bool answer = false;

    QStringList chooseFilesAndFolders(const QString &) override { return chosen; }
    QString chooseFileToOpen(const QString &) override { return openAnswer; }
    QString chooseFileToSave(const QString &name, const QString &) override
    {
        proposedName = name;
        return saveAnswer;
    }
    void setClipboardText(const QString &text) override { clipboard = text; }
    bool confirm(const QString &question, const QString &, const QString &) override
    {
        asked.append(question);
        return answer;
    }
};

/// A store with a fake loader and fake dialogs, its data folder and a folder for documents.
class StoreTest : public ::testing::Test {
protected:
    QTemporaryDir data, files;
    FakeLoader fake;
    FakeUi ui;
    std::unique_ptr<Store> store = makeStore();

    std::unique_ptr<Store> makeStore()
    {
        return std::make_unique<Store>(StoreOptions{data.path(), fake.loader(), &ui, {}});
    }
    void TearDown() override
    {
        fake.release();
        idle();
    }
    bool idle()
    {
        return waitUntil([&] { return !store->isProcessing(); });
    }

    /// Writes files (and their folders) under the documents folder; returns their paths.
    QStringList makeFiles(const QStringList &relative, const QByteArray &content = {})
    {
        QStringList paths;
        for (const QString &rel : relative) {
            paths.append(files.filePath(rel));
            QDir().mkpath(QFileInfo(paths.last()).absolutePath());
            writeFile(paths.last(), content);
        }
        return paths;
    }
    /// Adds `count` documents named doc1.pdf… and waits until they are read.
    QList<DocPtr> readBatch(int count)
    {
        QStringList names;
        for (int i = 1; i <= count; ++i)
            names.append(QStringLiteral("doc%1.pdf").arg(i));
        store->add(makeFiles(names));
        EXPECT_TRUE(idle());
        return store->docs();
    }
};
