#pragma once

#include "Outlines.h"
#include "model/PageData.h"

#include <QPixmap>
#include <QWidget>

/// One page image scaled to fit the widget, keeping its aspect ratio, with outlines drawn over it.
class PageCanvas : public QWidget {
    Q_OBJECT
public:
    explicit PageCanvas(QWidget *parent = nullptr);

    void setPage(const PagePtr &page);
    void setOutlines(const QList<OutlineBox> &outlines);
    /// The outlines currently drawn.
    const QList<OutlineBox> &outlines() const { return m_outlines; }
    /// Where the page image lies in the widget, in widget coordinates.
    QRectF imageRect() const;

    QSize sizeHint() const override { return QSize(520, 680); }
    QSize minimumSizeHint() const override { return QSize(160, 180); }

protected:
    void paintEvent(QPaintEvent *) override;

private:
    QSizeF pageSize() const;

    PagePtr m_page;
    QList<OutlineBox> m_outlines;
    QPixmap m_scaled; // the image at its last displayed size, so repaints do not rescale it
};
