#include "Outlines.h"

#include "Theme.h"
#include "model/CustomFieldDef.h"
#include "model/Doubts.h"

#include <algorithm>

QColor OutlineBox::color() const
{
    const Theme::Tone tone = kind == OutlineKind::Detected        ? Theme::Tone::Green
                             : kind == OutlineKind::LowConfidence ? Theme::Tone::Orange
                                                                  : Theme::Tone::Blue;
    return Theme::color(tone);
}

namespace Outlines {

QString itemKey(const LineItem &item)
{
    return QStringLiteral("item-") + uuidText(item.id);
}

QList<OutlineBox> forPage(const DocItem &doc, int page, const QString &highlightKey)
{
    QList<OutlineBox> boxes;
    const QList<Doubt> doubts = Doubts::of(doc.fields(), doc.items());
    for (const Field &f : doc.fields()) {
        if (!f.box || f.box->page != page || f.value.isEmpty())
            continue;
        const bool doubted = !Doubts::reasonsFor(doubts, f.key).isEmpty();
        const OutlineKind kind = !doubted && (f.edited || f.confidence >= confident)
                                     ? OutlineKind::Detected
                                     : OutlineKind::LowConfidence;
        boxes.append({f.key, f.box->rect, kind, !highlightKey.isEmpty() && f.key == highlightKey, f.label});
    }
    for (const LineItem &item : doc.items()) {
        if (!item.box || item.box->page != page)
            continue;
        const QString id = itemKey(item);
        boxes.append({id, item.box->rect, OutlineKind::LineItem, id == highlightKey, item.description});
    }
    return boxes;
}

std::optional<PageBox> boxOf(const DocItem &doc, const QString &key)
{
    if (key.isEmpty())
        return std::nullopt;
    for (const Field &f : doc.fields()) {
        if (f.key == key)
            return f.box;
    }
    for (const LineItem &item : doc.items()) {
        if (itemKey(item) == key)
            return item.box;
    }
    return std::nullopt;
}

QList<OutlineBox> inPaintOrder(const QList<OutlineBox> &outlines)
{
    QList<OutlineBox> sorted = outlines;
    const auto area = [](const OutlineBox &b) { return b.rect.width() * b.rect.height(); };
    std::stable_sort(sorted.begin(), sorted.end(), [&](const OutlineBox &a, const OutlineBox &b) {
        if (a.selected != b.selected)
            return b.selected;
        return area(a) > area(b);
    });
    return sorted;
}

QRectF tagRect(const QRectF &outline, const QSizeF &tag, const QRectF &image, const QList<QRectF> &text)
{
    constexpr double gap = 2.0;
    const QRectF candidates[] = {
        QRectF(QPointF(outline.left(), outline.top() - gap - tag.height()), tag),
        QRectF(QPointF(outline.left(), outline.bottom() + gap), tag),
        QRectF(QPointF(outline.right() + gap, outline.center().y() - tag.height() / 2), tag),
        QRectF(QPointF(outline.left() - gap - tag.width(), outline.center().y() - tag.height() / 2), tag),
    };
    QRectF best;
    double bestCover = -1.0;
    for (QRectF c : candidates) {
        // Kept on the page: a tag that had to move back may then cover the outline, counted below.
        c.moveLeft(std::clamp(c.left(), image.left(), std::max(image.left(), image.right() - c.width())));
        c.moveTop(std::clamp(c.top(), image.top(), std::max(image.top(), image.bottom() - c.height())));
        double cover = 0.0;
        for (const QRectF &t : text) {
            const QRectF overlap = c.intersected(t);
            cover += overlap.width() * overlap.height();
        }
        const QRectF onOutline = c.intersected(outline);
        cover += onOutline.width() * onOutline.height();
        if (bestCover < 0 || cover < bestCover) {
            best = c;
            bestCover = cover;
        }
        if (cover == 0.0)
            break;
    }
    return best;
}

QRectF fitRect(const QSizeF &imageSize, const QRectF &area)
{
    if (imageSize.isEmpty() || area.isEmpty())
        return QRectF(area.center(), QSizeF(0, 0));
    const QSizeF scaled = imageSize.scaled(area.size(), Qt::KeepAspectRatio);
    return QRectF(area.x() + (area.width() - scaled.width()) / 2,
                  area.y() + (area.height() - scaled.height()) / 2, scaled.width(), scaled.height());
}

QRectF toDisplay(const QRectF &normalised, const QRectF &imageRect)
{
    return pageToDisplay(imageRect, 0).mapRect(normalised);
}

QTransform pageToDisplay(const QRectF &imageRect, int quarterTurns)
{
    const double l = imageRect.left(), t = imageRect.top(), w = imageRect.width(), h = imageRect.height();
    // x' = m11·x + m21·y + dx, y' = m12·x + m22·y + dy; the page's top left goes to the turned corner.
    switch (((quarterTurns % 4) + 4) % 4) {
    case 1:
        return QTransform(0, h, -w, 0, l + w, t);
    case 2:
        return QTransform(-w, 0, 0, -h, l + w, t + h);
    case 3:
        return QTransform(0, -h, w, 0, l, t + h);
    default:
        return QTransform(w, 0, 0, h, l, t);
    }
}

} // namespace Outlines
