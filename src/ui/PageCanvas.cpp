#include "PageCanvas.h"

#include "Theme.h"

#include <QPainter>
#include <QPainterPath>

namespace {

constexpr double letterAspect = 8.5 / 11.0; // the blank page drawn when a page has no image

} // namespace

PageCanvas::PageCanvas(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void PageCanvas::setPage(const PagePtr &page)
{
    if (page == m_page)
        return;
    m_page = page;
    m_scaled = QPixmap();
    updateGeometry();
    update();
}

void PageCanvas::setOutlines(const QList<OutlineBox> &outlines)
{
    if (outlines.size() == m_outlines.size()) {
        bool same = true;
        for (qsizetype i = 0; same && i < outlines.size(); ++i) {
            const OutlineBox &a = outlines[i], &b = m_outlines[i];
            same = a.id == b.id && a.rect == b.rect && a.kind == b.kind && a.selected == b.selected &&
                   a.label == b.label;
        }
        if (same)
            return;
    }
    m_outlines = outlines;
    update();
}

QSizeF PageCanvas::pageSize() const
{
    if (m_page && !m_page->image.isNull())
        return m_page->image.size();
    return QSizeF(1100 * letterAspect, 1100);
}

QSizeF PageCanvas::turnedPageSize() const
{
    const QSizeF size = pageSize();
    return m_turns % 2 ? size.transposed() : size;
}

void PageCanvas::setQuarterTurns(int turns)
{
    turns = ((turns % 4) + 4) % 4;
    if (turns == m_turns)
        return;
    m_turns = turns;
    updateGeometry();
    update();
}

void PageCanvas::setScale(double scale)
{
    if (scale == m_scale)
        return;
    m_scale = scale;
    updateGeometry();
    update();
}

QSize PageCanvas::sizeHint() const
{
    if (m_scale <= 0)
        return QSize(520, 680);
    return (turnedPageSize() * m_scale).toSize() + QSize(2 * margin, 2 * margin);
}

QRectF PageCanvas::imageRect() const
{
    const QRectF area = QRectF(rect()).adjusted(margin, margin, -margin, -margin);
    if (m_scale <= 0)
        return Outlines::fitRect(turnedPageSize(), area).toAlignedRect();
    // At a fixed scale the page is centred while it is smaller than the widget, else starts at its margin.
    const QSizeF size = turnedPageSize() * m_scale;
    const QPointF topLeft(area.left() + std::max(0.0, (area.width() - size.width()) / 2),
                          area.top() + std::max(0.0, (area.height() - size.height()) / 2));
    return QRectF(topLeft, size).toAlignedRect();
}

QTransform PageCanvas::pageTransform() const
{
    return Outlines::pageToDisplay(imageRect(), m_turns);
}

void PageCanvas::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF target = imageRect();
    if (target.isEmpty())
        return;

    // A soft shadow lifts the page off the background.
    painter.fillRect(target.translated(0, 2).adjusted(-1, -1, 1, 1), QColor(0, 0, 0, 28));
    if (m_page && !m_page->image.isNull()) {
        const qreal dpr = devicePixelRatioF();
        const QSize pixels = (target.size() * dpr).toSize();
        if (m_scaled.size() != pixels || m_scaledTurns != m_turns) {
            const QImage turned =
                m_turns ? m_page->image.transformed(QTransform().rotate(90 * m_turns)) : m_page->image;
            m_scaled =
                QPixmap::fromImage(turned.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
            m_scaled.setDevicePixelRatio(dpr);
            m_scaledTurns = m_turns;
        }
        painter.drawPixmap(target.topLeft(), m_scaled);
    } else {
        painter.fillRect(target, Qt::white);
    }

    const QTransform toWidget = pageTransform();
    const QList<OutlineBox> ordered = Outlines::inPaintOrder(m_outlines);
    const OutlineBox *selected = nullptr;
    for (const OutlineBox &box : ordered) {
        const QRectF r = toWidget.mapRect(box.rect).adjusted(-2, -2, 2, 2);
        const QColor color = box.color();
        painter.setPen(QPen(color, box.selected ? 3.0 : 1.5));
        painter.setBrush(Theme::faded(color, box.selected ? 0.22 : 0.08));
        painter.drawRoundedRect(r, 3, 3);
        if (box.selected)
            selected = &box;
    }

    // The focused value's label sits on a tag just above its outline.
    if (selected && !selected->label.isEmpty()) {
        const QRectF r = toWidget.mapRect(selected->rect).adjusted(-2, -2, 2, 2);
        QFont font = Theme::caption();
        font.setBold(true);
        const QFontMetrics metrics(font);
        const QString text = metrics.elidedText(selected->label, Qt::ElideRight, int(target.width()) - 12);
        // The tag goes where it hides none of the page's text, so the value can be read beside it.
        QList<QRectF> lines;
        if (m_page) {
            for (const TextLine &line : m_page->lines)
                lines.append(toWidget.mapRect(line.rect));
        }
        const QRectF tag = Outlines::tagRect(
            r, QSizeF(metrics.horizontalAdvance(text) + 10, metrics.height() + 4), target, lines);
        QPainterPath path;
        path.addRoundedRect(tag, 3, 3);
        painter.fillPath(path, selected->color());
        painter.setPen(Qt::white);
        painter.setFont(font);
        painter.drawText(tag, Qt::AlignCenter, text);
    }
}
