#include "Batch.h"

#include "intake/SupportedFiles.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QSet>
#include <QtConcurrent/QtConcurrentRun>
#include <algorithm>

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
    const qsizetype first = m_docs.size();
    QList<StoredDoc> fresh;
    for (const Pipeline::Found &file : Pipeline::withoutRepeats(found, known)) {
        auto d = std::make_shared<DocItem>(QFileInfo(file.path).absoluteFilePath());
        subscribe(d);
        m_docs.append(d);
        fresh.append(stored(*d));
        if (!added.firstNew)
            added.firstNew = d;
    }
    if (added.firstNew) {
        if (m_file)
            report(m_file->insert(fresh, first));
        emit docsChanged();
    }
    if (!m_processing)
        startProcessing();
    return added;
}

void Batch::subscribe(const DocPtr &doc)
{
    DocItem *raw = doc.get();
    m_subscriptions.insert(doc->id(), connect(raw, &DocItem::changed, this, [this, raw] {
                               keep(*raw);
                               emit docChanged(raw);
                           }));
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
    if (m_file)
        report(m_file->remove(doc->id()));
    emit docsChanged();
    return i;
}

void Batch::detach()
{
    for (const QMetaObject::Connection &connection : std::as_const(m_subscriptions))
        disconnect(connection);
    m_subscriptions.clear();
    m_docs.clear();
    m_stamps.clear();
    m_notices.clear();
    m_pageErrors.clear();
    m_pagesFirst = QUuid();
}

void Batch::clear()
{
    // Stamps and notices stay: an undone Clear brings the documents back as they were.
    for (const QMetaObject::Connection &connection : std::as_const(m_subscriptions))
        disconnect(connection);
    m_subscriptions.clear();
    m_docs.clear();
    if (m_file)
        report(m_file->clear());
    emit docsChanged();
}

void Batch::insert(const QList<DocPtr> &docs, qsizetype index)
{
    QList<StoredDoc> kept;
    bool queued = false;
    for (qsizetype i = 0; i < docs.size(); ++i) {
        subscribe(docs[i]);
        m_docs.insert(index + i, docs[i]);
        kept.append(stored(*docs[i]));
        queued = queued || docs[i]->status().kind() == DocStatus::Queued;
    }
    if (m_file)
        report(m_file->insert(kept, index));
    emit docsChanged();
    if (queued && !m_processing)
        startProcessing();
}

namespace {

/// Why a document's file needs a look now, compared with how it was when read; empty when it is the same.
QString goneNotice()
{
    return QStringLiteral("The file is no longer where it was read from.");
}

QString changedNotice()
{
    return QStringLiteral("The file has changed since it was read. Re-read it to take the changes; "
                          "your corrections would be replaced.");
}

QString noticeFor(const QString &path, FileStamp &stamp)
{
    const QFileInfo info(path);
    if (!info.exists())
        return goneNotice();
    if (info.size() == stamp.size && info.lastModified().toMSecsSinceEpoch() == stamp.modified)
        return QString();
    // Touched but maybe not changed (copied back, synced): the contents decide.
    const FileStamp now = FileStamp::of(path);
    if (now.hash == stamp.hash) {
        stamp = now;
        return QString();
    }
    return changedNotice();
}

} // namespace

Batch::Opened Batch::open(const QString &path)
{
    detach();
    m_file.reset();
    Opened result;
    Expected<BatchFile::Opened> opened = BatchFile::open(path);
    if (auto *error = std::get_if<TabrixError>(&opened)) {
        result.notice = error->message;
        emit docsChanged();
        return result;
    }
    auto &[file, stored, notice] = std::get<BatchFile::Opened>(opened);
    result.notice = notice;
    bool queued = false;
    for (StoredDoc &s : stored) {
        auto d = std::make_shared<DocItem>(s.path, s.id);
        d->rows = std::move(s.rows);
        d->setFields(s.fields);
        d->setItems(s.items);
        d->setApproved(s.approved);
        d->setStatus(s.status);
        d->setProgress(s.status.kind() == DocStatus::Queued ? 0.0 : 1.0);
        queued = queued || s.status.kind() == DocStatus::Queued;
        // A document never read has nothing to protect: it is read from where it is.
        if (s.status.kind() == DocStatus::Ready) {
            if (const QString why = noticeFor(s.path, s.stamp); !why.isEmpty())
                m_notices.insert(s.id, why);
        }
        m_stamps.insert(s.id, s.stamp);
        if (s.exported)
            result.exported.insert(s.id, *s.exported);
        subscribe(d);
        m_docs.append(d);
    }
    // Subscribed after restoring: what was just read is not written back.
    m_file = std::move(file);
    emit docsChanged();
    if (queued && !m_processing)
        startProcessing();
    loadPages();
    return result;
}

bool Batch::needsPages(const DocItem &doc) const
{
    return doc.status().kind() == DocStatus::Ready && doc.pages.isEmpty() && !m_notices.contains(doc.id()) &&
           !m_pageErrors.contains(doc.id());
}

QString Batch::pagesNotice(const QUuid &id) const
{
    const QString notice = fileNotice(id);
    return notice.isEmpty() ? m_pageErrors.value(id) : notice;
}

void Batch::loadPages(const QUuid &first)
{
    if (!first.isNull())
        m_pagesFirst = first;
    if (m_loadingPages)
        return;
    DocPtr next = doc(m_pagesFirst);
    if (!next || !needsPages(*next)) {
        const auto found =
            std::find_if(m_docs.cbegin(), m_docs.cend(), [this](const DocPtr &d) { return needsPages(*d); });
        next = found == m_docs.cend() ? nullptr : *found;
    }
    if (!next)
        return;
    m_loadingPages = true;
    // On the one reading thread, so loading pages never competes with reading a document.
    using Result = std::pair<Expected<QList<PagePtr>>, FileStamp>;
    auto *watcher = new QFutureWatcher<Result>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher, next] {
        watcher->deleteLater();
        m_loadingPages = false;
        Result result = watcher->result();
        takePages(next, std::move(result.first), result.second);
        loadPages();
    });
    watcher->setFuture(QtConcurrent::run(&m_pool, [path = next->path(), loader = m_loader] {
        // Stamped after loading, so pages of a file changed meanwhile are never taken as the kept ones.
        Expected<QList<PagePtr>> pages = loader(path, {});
        return Result{std::move(pages), FileStamp::of(path)};
    }));
}

void Batch::takePages(const DocPtr &doc, Expected<QList<PagePtr>> pages, const FileStamp &stamp)
{
    // Removed, re-read or being read meanwhile: its pages come (or came) with its reading.
    if (!m_docs.contains(doc) || !needsPages(*doc))
        return;
    // Moved or changed after the batch was opened: these are not the pages the values were read from.
    if (stamp.size < 0) {
        m_notices.insert(doc->id(), goneNotice());
    } else if (stamp.hash != m_stamps.value(doc->id()).hash) {
        m_notices.insert(doc->id(), changedNotice());
    } else if (auto *error = std::get_if<TabrixError>(&pages)) {
        m_pageErrors.insert(doc->id(), QStringLiteral("The page cannot be shown: ") + error->message);
    } else if (auto &loaded = std::get<QList<PagePtr>>(pages); loaded.isEmpty()) {
        m_pageErrors.insert(doc->id(), QStringLiteral("The file has no page to show."));
    } else {
        doc->pages = std::move(loaded);
    }
    // Not a change to keep: only the views need to know.
    emit docChanged(doc.get());
}

StoredDoc Batch::stored(const DocItem &doc) const
{
    return {doc.id(),     doc.path(),     m_stamps.value(doc.id()),
            doc.status(), doc.approved(), doc.fields(),
            doc.items(),  doc.rows,       std::nullopt};
}

void Batch::keep(const DocItem &doc)
{
    // Progress within a run is not kept: a run cut short starts again.
    if (!m_file || doc.status().isInProgress())
        return;
    for (qsizetype i = 0; i < m_docs.size(); ++i) {
        if (m_docs[i].get() == &doc) {
            report(m_file->save(stored(doc), i));
            return;
        }
    }
}

void Batch::keepExported(const DocPtr &doc)
{
    if (m_file)
        report(m_file->saveExported(doc->id(), doc->fields(), doc->items()));
}

void Batch::report(const std::optional<TabrixError> &error)
{
    if (error)
        emit keepFailed(error->message);
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

    using Result = std::pair<Expected<Processing::Loaded>, FileStamp>;
    auto *watcher = new QFutureWatcher<Result>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher, doc] {
        watcher->deleteLater();
        Result result = watcher->result();
        finish(doc, std::move(result.first), result.second);
    });
    watcher->setFuture(QtConcurrent::run(
        &m_pool, [path = doc->path(), snapshot = m_definitions(), report, loader = m_loader] {
            // Stamped before reading, so a change made while it is read shows next time.
            FileStamp stamp = FileStamp::of(path);
            return Result{Processing::run(path, snapshot, report, loader), std::move(stamp)};
        }));
}

void Batch::finish(const DocPtr &doc, Expected<Processing::Loaded> result, const FileStamp &stamp)
{
    if (m_docs.contains(doc)) {
        m_stamps.insert(doc->id(), stamp);
        m_notices.remove(doc->id());
    }
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
