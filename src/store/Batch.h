#pragma once

#include "BatchFile.h"
#include "DocPtr.h"
#include "intake/Processing.h"
#include "model/CustomFieldDef.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QThreadPool>
#include <QUuid>
#include <functional>

/// The documents of the batch and the loop that reads them, one at a time, on a background thread; when
/// a batch file is open, every change is written to it as it happens (BatchFile).
///
/// Lives on the main thread. A run sees only the file path, a snapshot of the custom field definitions
/// (asked for when the run starts) and a progress callback; its result comes back whole through a
/// queued call. A document removed mid-run receives its result harmlessly.
class Batch : public QObject {
    Q_OBJECT
public:
    /// `loader` reads one document's pages; `definitions` gives the custom fields a run extracts.
    Batch(Processing::Loader loader, std::function<QList<CustomFieldDef>()> definitions,
          QObject *parent = nullptr);
    /// Waits for the running document, whose result is then dropped unseen.
    ~Batch() override;

    /// The documents in the order they were added.
    const QList<DocPtr> &docs() const { return m_docs; }
    /// The document with this id, or null.
    DocPtr doc(const QUuid &id) const;
    /// The approved documents in batch order: what every export writes.
    QList<DocPtr> approvedDocs() const;
    /// True while the loop runs (from add/reprocess until no document is queued).
    bool isProcessing() const { return m_processing; }

    /// What add() made of its paths.
    struct Added {
        bool foundAny = false; ///< a supported file was found (new or already in the batch)
        DocPtr firstNew;       ///< the first document appended, or null
    };
    /// Expands files and folders (passing over what cannot be read), appends one queued document per
    /// file not yet in the batch (compared by Pipeline::standardPath) and starts the loop.
    Added add(const QStringList &paths);
    /// Clears the approval, queues the document again (its fields stay until the run replaces them)
    /// and starts the loop if it is not running.
    void reprocess(const DocPtr &doc);
    /// Takes a document out; returns its former index, or -1 when it was not in the batch.
    qsizetype remove(const DocPtr &doc);
    /// Empties the batch. A running document finishes in the background, unseen.
    void clear();
    /// Puts documents taken out earlier back at `index` (undo); queued ones are read.
    void insert(const QList<DocPtr> &docs, qsizetype index);

    /// What opening a batch file found.
    struct Opened {
        QString notice; ///< for the user: a file set aside, or why no file could be opened; else empty
        /// Per document, its fields and items as the last export to a file wrote them.
        QHash<QUuid, std::pair<QList<Field>, QList<LineItem>>> exported;
    };
    /// Replaces the batch with the one kept at `path` (created when missing); from then on every change
    /// is kept there. Documents whose file moved or changed since they were read are noted
    /// (fileNotice) and never read again by themselves; documents cut short are queued again. When no
    /// file can be opened the batch starts empty, kept in memory only, and the notice says why.
    Opened open(const QString &path);
    /// The open batch file's path; empty when the batch is kept in memory only.
    QString filePath() const { return m_file ? m_file->path() : QString(); }
    /// Why a document's file needs a look ("moved", "changed"), empty when it is as it was read.
    QString fileNotice(const QUuid &id) const { return m_notices.value(id); }
    /// Keeps a document's fields and items as an export wrote them.
    void keepExported(const DocPtr &doc);

    /// Reads the page images of read documents that have none (restored from a batch file), one at a
    /// time in the background, `first` (when it names one) before the others. Only the pages are taken:
    /// fields, items and rows stay as kept. A file that moved or changed since it was read is not loaded;
    /// one found changed now gets its fileNotice. Open starts this by itself; calling it again only
    /// moves `first` ahead.
    void loadPages(const QUuid &first = QUuid());
    /// Why a read document shows no page: its fileNotice, or why its file could not be loaded; empty
    /// when its pages are shown or on their way.
    QString pagesNotice(const QUuid &id) const;

signals:
    /// Documents were added, removed or cleared.
    void docsChanged();
    /// A document of the batch changed (status, progress, approval, fields or items).
    void docChanged(DocItem *doc);
    /// A run abandoned these custom field definitions' patterns at their matching bound.
    void slowPatterns(const QList<QUuid> &ids);
    /// A change could not be written to the batch file; `message` is for the user.
    void keepFailed(const QString &message);

private:
    void subscribe(const DocPtr &doc);
    void startProcessing();
    void processNext();
    void process(const DocPtr &doc);
    void finish(const DocPtr &doc, Expected<Processing::Loaded> result, const FileStamp &stamp);
    StoredDoc stored(const DocItem &doc) const;
    /// Writes a document whose state is settled (not mid-run) to the batch file.
    void keep(const DocItem &doc);
    void report(const std::optional<TabrixError> &error);
    void detach();
    /// True for a read document without pages whose file may still give them.
    bool needsPages(const DocItem &doc) const;
    void takePages(const DocPtr &doc, Expected<QList<PagePtr>> pages, const FileStamp &stamp);

    Processing::Loader m_loader;
    std::function<QList<CustomFieldDef>()> m_definitions;
    QList<DocPtr> m_docs;
    QHash<QUuid, QMetaObject::Connection> m_subscriptions;
    bool m_processing = false;
    std::unique_ptr<BatchFile> m_file;
    QHash<QUuid, FileStamp> m_stamps;
    QHash<QUuid, QString> m_notices;
    QHash<QUuid, QString> m_pageErrors;
    QUuid m_pagesFirst;
    bool m_loadingPages = false;
    // One worker thread kept alive, so per-thread engines (text recognition) are set up once.
    QThreadPool m_pool;
};
