#pragma once

#include "store/Processing.h"
#include "store/StoreUi.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMutex>
#include <QStringList>
#include <QTemporaryDir>
#include <QThread>
#include <QWaitCondition>
#include <memory>

/// Runs the event loop until `done()` holds or five seconds pass; returns whether it held.
template <class Pred> bool waitUntil(Pred done)
{
    QDeadlineTimer deadline(5000);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QThread::usleep(200);
    }
    return true;
}

/// A loader that reads no file: each file name maps to text lines or to an error, and the test can hold
/// a run at its start to act while a document is in progress. Thread-safe; copies share state.
class FakeLoader {
public:
    /// The lines one page of `fileName` yields (one line per text, stacked down the page).
    void setText(const QString &fileName, const QStringList &texts)
    {
        QMutexLocker lock(&m_state->mutex);
        m_state->texts.insert(fileName, texts);
    }
    void setError(const QString &fileName, const QString &message)
    {
        QMutexLocker lock(&m_state->mutex);
        m_state->errors.insert(fileName, message);
    }
    /// From now on every run waits at its start until release().
    void hold()
    {
        QMutexLocker lock(&m_state->mutex);
        m_state->held = true;
    }
    void release()
    {
        QMutexLocker lock(&m_state->mutex);
        m_state->held = false;
        m_state->wake.wakeAll();
    }
    /// File names in the order runs started.
    QStringList calls() const
    {
        QMutexLocker lock(&m_state->mutex);
        return m_state->calls;
    }
    /// True while a run is waiting for release().
    bool waiting() const
    {
        QMutexLocker lock(&m_state->mutex);
        return m_state->waiting;
    }
    /// The progress callback of the latest run, usable after that run has ended.
    Pipeline::Report lastReport() const
    {
        QMutexLocker lock(&m_state->mutex);
        return m_state->lastReport;
    }

    Processing::Loader loader() const
    {
        return [state = m_state](const QString &path,
                                 const Pipeline::Report &report) -> Expected<QList<PagePtr>> {
            const QString name = QFileInfo(path).fileName();
            QMutexLocker lock(&state->mutex);
            state->calls.append(name);
            state->lastReport = report;
            state->waiting = state->held;
            while (state->held)
                state->wake.wait(&state->mutex);
            state->waiting = false;
            if (state->errors.contains(name))
                return TabrixError{state->errors.value(name)};
            auto page = std::make_shared<PageData>();
            const QStringList texts = state->texts.value(name);
            for (qsizetype i = 0; i < texts.size(); ++i)
                page->lines.append(TextLine{texts[i], QRectF(0.1, 0.05 + 0.04 * i, 0.5, 0.03), 0});
            return QList<PagePtr>{page};
        };
    }

private:
    struct State {
        QMutex mutex;
        QWaitCondition wake;
        bool held = false;
        bool waiting = false;
        QStringList calls;
        QHash<QString, QStringList> texts;
        QHash<QString, QString> errors;
        Pipeline::Report lastReport;
    };
    std::shared_ptr<State> m_state = std::make_shared<State>();
};

/// Dialog answers prepared by the test; the clipboard is a string.
class FakeUi : public StoreUi {
public:
    QStringList filesAndFolders;
    QString openAnswer;
    QString saveAnswer;
    QString clipboard;
    QString lastProposedName;

    QStringList chooseFilesAndFolders(const QString &) override { return filesAndFolders; }
    QString chooseFileToOpen(const QString &) override { return openAnswer; }
    QString chooseFileToSave(const QString &proposedName, const QString &) override
    {
        lastProposedName = proposedName;
        return saveAnswer;
    }
    void setClipboardText(const QString &text) override { clipboard = text; }
};

/// Creates (empty) files below `root`, with folders as needed; returns their absolute paths.
inline QStringList makeFiles(const QTemporaryDir &root, const QStringList &relative)
{
    QStringList paths;
    for (const QString &rel : relative) {
        const QString path = root.filePath(rel);
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        paths.append(path);
    }
    return paths;
}

/// Writes `bytes` to `path`, replacing it.
inline void writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly | QIODevice::Truncate);
    file.write(bytes);
}

inline QByteArray readBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
