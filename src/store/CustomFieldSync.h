#pragma once

#include "DocPtr.h"
#include "model/CustomFieldDef.h"

#include <QList>
#include <QObject>
#include <QThreadPool>
#include <QUuid>

/// Brings the custom fields of ready documents in line with changed definitions (Extractor::resync):
/// the quick part at once, the patterns on a background thread so a slow one never blocks the caller.
/// Only the latest sync's result is applied. Lives on the main thread.
class CustomFieldSync : public QObject {
    Q_OBJECT
public:
    explicit CustomFieldSync(QObject *parent = nullptr);
    /// Waits for a running match, whose result is then dropped.
    ~CustomFieldSync() override;

    /// Re-syncs every ready document of `docs` with `definitions`; supersedes a sync still running.
    void sync(const QList<DocPtr> &docs, const QList<CustomFieldDef> &definitions);
    /// True while a sync's patterns are matched in the background.
    bool isSyncing() const { return m_syncing; }

signals:
    /// The background part of a sync was applied; `slow` names definitions abandoned at their bound.
    void finished(const QList<QUuid> &slow);

private:
    struct Work;
    struct Result;
    void apply(const Result &result);

    QThreadPool m_pool;
    int m_generation = 0;
    bool m_syncing = false;
};
