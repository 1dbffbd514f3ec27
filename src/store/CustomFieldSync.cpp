#include "CustomFieldSync.h"

#include "extract/CustomField.h"

#include <QFutureWatcher>
#include <QtConcurrent/QtConcurrentRun>

struct CustomFieldSync::Work {
    std::weak_ptr<DocItem> doc;
    QList<Row> rows;
    QList<CustomFieldDef> pending;
};

struct CustomFieldSync::Result {
    QList<std::pair<std::weak_ptr<DocItem>, QList<Field>>> fields;
    QList<QUuid> slow;
};

CustomFieldSync::CustomFieldSync(QObject *parent) : QObject(parent)
{
    m_pool.setMaxThreadCount(1);
}

CustomFieldSync::~CustomFieldSync()
{
    m_pool.waitForDone();
}

void CustomFieldSync::sync(const QList<DocPtr> &docs, const QList<CustomFieldDef> &definitions)
{
    const int generation = ++m_generation;
    QList<Work> work;
    for (const DocPtr &d : docs) {
        if (d->status().kind() != DocStatus::Ready)
            continue;
        Extractor::Resync resynced = Extractor::resync(d->fields(), definitions, d->rows);
        d->setFields(resynced.fields);
        if (!resynced.pending.isEmpty())
            work.append({d, d->rows, std::move(resynced.pending)});
    }
    // A sync still running for earlier definitions is superseded: its result is dropped on arrival.
    m_syncing = !work.isEmpty();
    if (work.isEmpty())
        return;

    auto *watcher = new QFutureWatcher<Result>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher, generation] {
        watcher->deleteLater();
        if (generation != m_generation)
            return; // a later sync has replaced these definitions
        m_syncing = false;
        const Result result = watcher->result();
        apply(result);
        emit finished(result.slow);
    });
    watcher->setFuture(QtConcurrent::run(&m_pool, [work = std::move(work)] {
        Result result;
        for (const Work &w : work) {
            // One matching budget per document for all its pending patterns, as when it was read.
            QList<QUuid> slow;
            result.fields.append({w.doc, Extractor::extractCustomFields(w.pending, w.rows, &slow)});
            for (const QUuid &id : slow)
                if (!result.slow.contains(id))
                    result.slow.append(id);
        }
        return result;
    }));
}

void CustomFieldSync::apply(const Result &result)
{
    for (const auto &[weak, extracted] : result.fields) {
        const DocPtr d = weak.lock();
        // A document read again or removed meanwhile has its own fields now.
        if (!d || d->status().kind() != DocStatus::Ready)
            continue;
        QList<Field> fields = d->fields();
        if (Extractor::fillPending(fields, extracted))
            d->setFields(fields);
    }
}
