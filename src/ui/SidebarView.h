#pragma once

#include "store/Store.h"

#include <QWidget>

class QListView;
class QStackedWidget;
class QueueModel;

/// The left column: the batch queue (or its empty state), the batch summary and the privacy note.
/// The list's current row is bound to the store's selection in both directions.
class SidebarView : public QWidget {
    Q_OBJECT
public:
    explicit SidebarView(Store &store, QWidget *parent = nullptr);

    QListView *queueView() const { return m_list; }
    QueueModel *queueModel() const { return m_model; }

private:
    void showSelection();
    void showQueueOrEmpty();
    void contextMenu(const QPoint &at);

    Store &m_store;
    QueueModel *m_model;
    QListView *m_list;
    QStackedWidget *m_stack;
    QWidget *m_empty;
    bool m_syncing = false;
};
