#pragma once

#include <QStyledItemDelegate>

/// Draws one queue row: the file's icon in the row's tint, its name, the status line and amount, a
/// progress bar while it is read, and the "Duplicate" word and approval mark when they apply. Every row
/// has the same height, so long queues lay out and scroll without measuring each row.
class QueueDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
