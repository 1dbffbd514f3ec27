#include "SidebarView.h"

#include "BatchSummaryView.h"
#include "PlatformText.h"
#include "QueueDelegate.h"
#include "QueueModel.h"
#include "SymbolLabel.h"
#include "Theme.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace {

QFrame *divider()
{
    auto *line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Plain);
    line->setStyleSheet(QStringLiteral("color: palette(mid)"));
    return line;
}

QWidget *emptyQueue()
{
    auto *box = new QWidget;
    auto *layout = new QVBoxLayout(box);
    layout->addStretch();
    layout->addWidget(new SymbolLabel(QStringLiteral("tray"), 44, Theme::secondaryText()), 0,
                      Qt::AlignHCenter);
    auto *text = new QLabel(QStringLiteral("Batch queue is empty"));
    text->setAlignment(Qt::AlignCenter);
    text->setStyleSheet(QStringLiteral("color: %1").arg(Theme::secondaryText().name()));
    layout->addWidget(text);
    layout->addStretch();
    return box;
}

QWidget *privacyBadge()
{
    auto *box = new QWidget;
    auto *layout = new QHBoxLayout(box);
    layout->setContentsMargins(14, 10, 14, 12);
    layout->setSpacing(8);
    layout->addWidget(new SymbolLabel(QStringLiteral("lock.shield"), 18, Theme::secondaryText()), 0,
                      Qt::AlignTop);
    auto *text = new QLabel(PlatformText::adapt(
        QStringLiteral("Extraction is rule-based and runs offline on this Mac. Nothing is uploaded.")));
    text->setObjectName(QStringLiteral("privacy"));
    text->setWordWrap(true);
    text->setFont(Theme::caption());
    text->setStyleSheet(QStringLiteral("color: %1").arg(Theme::secondaryText().name()));
    layout->addWidget(text, 1);
    return box;
}

} // namespace

SidebarView::SidebarView(Store &store, QWidget *parent) : QWidget(parent), m_store(store)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    m_model = new QueueModel(store, this);
    m_list = new QListView;
    m_list->setObjectName(QStringLiteral("queue"));
    m_list->setModel(m_model);
    m_list->setItemDelegate(new QueueDelegate(m_list));
    m_list->setUniformItemSizes(true);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setMouseTracking(true);
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    m_list->viewport()->setAutoFillBackground(false);

    m_empty = emptyQueue();
    m_stack = new QStackedWidget;
    m_stack->addWidget(m_empty);
    m_stack->addWidget(m_list);
    m_stack->setMinimumHeight(120); // a few rows stay visible; below that the sidebar scrolls
    layout->addWidget(m_stack, 1);
    layout->addWidget(divider());
    layout->addWidget(new BatchSummaryView(store));
    layout->addWidget(divider());
    layout->addWidget(privacyBadge());

    connect(m_list->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) {
                if (m_syncing || !current.isValid())
                    return;
                if (const DocPtr doc = m_model->docAt(current.row()))
                    m_store.setSelectedID(doc->id());
            });
    connect(m_list, &QListView::customContextMenuRequested, this, &SidebarView::contextMenu);
    connect(m_model, &QAbstractItemModel::modelReset, this, [this] {
        showQueueOrEmpty();
        showSelection();
    });
    connect(&store, &Store::selectionChanged, this, &SidebarView::showSelection);
    showQueueOrEmpty();
    showSelection();
}

void SidebarView::showQueueOrEmpty()
{
    m_stack->setCurrentWidget(m_model->rowCount() == 0 ? m_empty : m_list);
}

void SidebarView::showSelection()
{
    m_syncing = true;
    const int row = m_model->rowOf(m_store.selectedID());
    if (row < 0) {
        m_list->selectionModel()->clear();
    } else {
        const QModelIndex index = m_model->index(row);
        m_list->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
        m_list->scrollTo(index);
    }
    m_syncing = false;
}

void SidebarView::contextMenu(const QPoint &at)
{
    const DocPtr doc = m_model->docAt(m_list->indexAt(at).row());
    if (!doc)
        return;
    QMenu menu(this);
    menu.addAction(QStringLiteral("Re-read this file"), this, [this, doc] { m_store.reprocessAsking(doc); });
    menu.addAction(QStringLiteral("Remove from queue"), this, [this, doc] { m_store.remove(doc); });
    menu.exec(m_list->viewport()->mapToGlobal(at));
}
