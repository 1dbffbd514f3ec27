#include "Batch.h"

#include "intake/SupportedFiles.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QSet>
#include <QtConcurrent/QtConcurrentRun>

Batch::Batch(Processing::Loader loader, std::function<QList<CustomFieldDef>()> definitions, QObject *parent)
    : QObject(parent), m_loader(std::move(loader)), m_definitions(std::move(definitions))
{
    if (!m_loader)
        m_loader = Processing::pipelineLoader();
    m_pool.setMaxThreadCount(1);
    m_pool.setExpiryTimeout(-1);
}

Batch::~Batch()
{
    for (const QMetaObject::Connection &connection : std::as_const(m_subscriptions))
        disconnect(connection);
    m_pool.waitForDone();
}

DocPtr Batch::doc(const QUuid &id) const
{
    if (id.isNull())
        return nullptr;
    for (const DocPtr &d : m_docs) {
        if (d->id() == id)
            return d;
    }
    return nullptr;
}

QList<DocPtr> Batch::approvedDocs() const
{
    QList<DocPtr> approved;
    for (const DocPtr &d : m_docs) {
        if (d->approved())
            approved.append(d);
    }
    return approved;
}

Batch::Added Batch::add(const QStringList &paths)
{
    QList<Pipeline::Found> found = Pipeline::expandReporting(paths);
    // The window reads what it can; a location that cannot be read is passed over.
    found.removeIf([](const Pipeline::Found &file) { return !file.error.isEmpty(); });
    Added added;
    added.foundAny = !found.isEmpty();
    if (!added.foundAny)
        return added;

    QSet<QString> known;
    for (const DocPtr &d : std::as_const(m_docs))
        known.insert(Pipeline::standardPath(d->path()));
    for (const Pipeline::Found &file : Pipeline::withoutRepeats(found, known)) {
        auto d = std::make_shared<DocItem>(QFileInfo(file.path).absoluteFilePath());
        subscribe(d);
        m_docs.append(d);
        if (!added.firstNew)
            added.firstNew = d;
    }
    if (added.firstNew)
        emit docsChanged();
    if (!m_processing)
        startProcessing();
    return added;
}

void Batch::subscribe(const DocPtr &doc)
{
    DocItem *raw = doc.get();
    m_subscriptions.insert(doc->id(),
                           connect(raw, &DocItem::changed, this, [this, raw] { emit docChanged(raw); }));
}

void Batch::reprocess(const DocPtr &doc)
{
    if (!doc)
        return;
    doc->setApproved(false);
    doc->setStatus(DocStatus::Queued);
    doc->setProgress(0.0);
    if (!m_processing)
        startProcessing();
}

qsizetype Batch::remove(const DocPtr &doc)
{
    const qsizetype i = m_docs.indexOf(doc);
    if (!doc || i < 0)
        return -1;
    disconnect(m_subscriptions.take(doc->id()));
    m_docs.removeAt(i);
    emit docsChanged();
    return i;
}

void Batch::clear()
{
    for (const QMetaObject::Connection &connection : std::as_const(m_subscriptions))
        disconnect(connection);
    m_subscriptions.clear();
    m_docs.clear();
    emit docsChanged();
}

void Batch::startProcessing()
{
    m_processing = true;
    // The loop starts from the event loop, as a task of its own, not inside the caller.
    QMetaObject::invokeMethod(this, &Batch::processNext, Qt::QueuedConnection);
}

void Batch::processNext()
{
    // The list is read afresh for every document, so additions, removals and re-reads are picked up.
    for (const DocPtr &d : std::as_const(m_docs)) {
        if (d->status().kind() == DocStatus::Queued) {
            process(d);
            return;
        }
    }
    m_processing = false;
}

void Batch::process(const DocPtr &doc)
{
    doc->setStatus(DocStatus::Reading);
    doc->setProgress(0.02);

    // Reports are posted to the main thread without waiting and hold the document weakly: the task
    // must never own (and so never destroy) a DocItem.
    std::weak_ptr<DocItem> weak = doc;
    Pipeline::Report report = [weak](DocStatus::Kind status, double progress) {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [weak, status, progress] {
                const DocPtr d = weak.lock();
                // A report that arrives after the document left the in-progress statuses is stale.
                if (!d || !d->status().isInProgress())
                    return;
                d->setProgress(progress);
                d->setStatus(status);
            },
            Qt::QueuedConnection);
    };

    using Result = Expected<Processing::Loaded>;
    auto *watcher = new QFutureWatcher<Result>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher, doc] {
        watcher->deleteLater();
        finish(doc, watcher->result());
    });
    watcher->setFuture(QtConcurrent::run(
        &m_pool, [path = doc->path(), snapshot = m_definitions(), report, loader = m_loader] {
            return Processing::run(path, snapshot, report, loader);
        }));
}

void Batch::finish(const DocPtr &doc, Expected<Processing::Loaded> result)
{
    if (auto *loaded = std::get_if<Processing::Loaded>(&result)) {
        doc->pages = std::move(loaded->pages);
        doc->rows = std::move(loaded->extraction.rows);
        doc->setFields(loaded->extraction.fields);
        doc->setItems(loaded->extraction.items);
        doc->setProgress(1.0);
        doc->setStatus(DocStatus::Ready);
        if (!loaded->extraction.slowPatterns.isEmpty())
            emit slowPatterns(loaded->extraction.slowPatterns);
    } else {
        doc->setProgress(1.0);
        doc->setStatus(DocStatus::failed(std::get<TabrixError>(result).message));
    }
    processNext();
}
