#pragma once

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

/// The documents of the batch and the loop that reads them, one at a time, on a background thread.
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

signals:
    /// Documents were added, removed or cleared.
    void docsChanged();
    /// A document of the batch changed (status, progress, approval, fields or items).
    void docChanged(DocItem *doc);
    /// A run abandoned these custom field definitions' patterns at their matching bound.
    void slowPatterns(const QList<QUuid> &ids);

private:
    void subscribe(const DocPtr &doc);
    void startProcessing();
    void processNext();
    void process(const DocPtr &doc);
    void finish(const DocPtr &doc, Expected<Processing::Loaded> result);

    Processing::Loader m_loader;
    std::function<QList<CustomFieldDef>()> m_definitions;
    QList<DocPtr> m_docs;
    QHash<QUuid, QMetaObject::Connection> m_subscriptions;
    bool m_processing = false;
    // One worker thread kept alive, so per-thread engines (text recognition) are set up once.
    QThreadPool m_pool;
};
