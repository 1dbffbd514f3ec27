#include "Outlines.h"

#include "Theme.h"
#include "model/CustomFieldDef.h"

QColor OutlineBox::color() const
{
    switch (kind) {
    case OutlineKind::Detected:
        return Theme::green();
    case OutlineKind::LowConfidence:
        return Theme::orange();
    case OutlineKind::LineItem:
        return Theme::blue();
    }
    return Theme::blue();
}

namespace Outlines {

QString itemKey(const LineItem &item)
{
    return QStringLiteral("item-") + uuidText(item.id);
}

QList<OutlineBox> forPage(const DocItem &doc, int page, const QString &highlightKey)
{
    QList<OutlineBox> boxes;
    for (const Field &f : doc.fields()) {
        if (!f.box || f.box->page != page || f.value.isEmpty())
            continue;
        const OutlineKind kind =
            f.edited || f.confidence >= confident ? OutlineKind::Detected : OutlineKind::LowConfidence;
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
    return QRectF(imageRect.x() + normalised.x() * imageRect.width(),
                  imageRect.y() + normalised.y() * imageRect.height(), normalised.width() * imageRect.width(),
                  normalised.height() * imageRect.height());
}

} // namespace Outlines
