#pragma once

#include "Outlines.h"
#include "model/PageData.h"

#include <QPixmap>
#include <QWidget>

/// One page image with outlines drawn over it, turned by quarter turns, either scaled to fit the widget
/// (keeping its aspect ratio) or at a fixed scale, for a scroll area to show in part.
class PageCanvas : public QWidget {
    Q_OBJECT
public:
    explicit PageCanvas(QWidget *parent = nullptr);

    void setPage(const PagePtr &page);
    void setOutlines(const QList<OutlineBox> &outlines);
    /// The outlines currently drawn.
    const QList<OutlineBox> &outlines() const { return m_outlines; }
    /// Where the (turned) page image lies in the widget, in widget coordinates.
    QRectF imageRect() const;
    /// Normalised page coordinates to widget coordinates, the turn included.
    QTransform pageTransform() const;

    /// Clockwise quarter turns the page is shown with (0–3).
    int quarterTurns() const { return m_turns; }
    void setQuarterTurns(int turns);
    /// Widget pixels per image pixel, or 0 to fit the page into the widget.
    double scale() const { return m_scale; }
    void setScale(double scale);
    /// The page's size in image pixels as shown, turn included.
    QSizeF turnedPageSize() const;
    /// Empty room kept around the page, in widget pixels.
    static constexpr int margin = 12;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return QSize(160, 180); }

protected:
    void paintEvent(QPaintEvent *) override;

private:
    QSizeF pageSize() const;

    PagePtr m_page;
    QList<OutlineBox> m_outlines;
    int m_turns = 0;
    double m_scale = 0.0;
    QPixmap m_scaled; // the image at its last displayed size and turn, so repaints do not rescale it
    int m_scaledTurns = 0;
};
