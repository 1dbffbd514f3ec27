#pragma once

#include "model/DocItem.h"

#include <QColor>
#include <QList>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QTransform>

/// The colour classes of outlines: confident or edited values, doubtful values, line items.
enum class OutlineKind { Detected, LowConfidence, LineItem };

/// One outline over a page: where a value was read.
struct OutlineBox {
    QString id;  ///< the field's key, or "item-" + the line item's id
    QRectF rect; ///< normalised page rectangle
    OutlineKind kind;
    bool selected; ///< the field or item has focus in the form
    QString label; ///< the field's label, or the item's description

    QColor color() const;
};

namespace Outlines {

/// Confidence from which a value counts as detected rather than doubtful (the badge uses it too).
constexpr double confident = 0.7;

/// The key under which a line item is highlighted and outlined.
QString itemKey(const LineItem &item);

/// The outlines for page `page` of `doc`: every field with a value and a box on that page (green when
/// edited or confident, orange when of low confidence or in doubt), then every line item with a box there
/// (blue), in that order.
/// `highlightKey` marks the selected one.
QList<OutlineBox> forPage(const DocItem &doc, int page, const QString &highlightKey);

/// The page box of the field or item keyed `key` in `doc`, if it has one.
std::optional<PageBox> boxOf(const DocItem &doc, const QString &key);

/// The outlines in the order they are painted: larger before smaller, so an outline lying inside
/// another (a currency sign inside the total) is drawn over it and stays visible; the selected one last.
QList<OutlineBox> inPaintOrder(const QList<OutlineBox> &outlines);

/// Where the tag of size `tag` naming a focused outline goes: above, below, right or left of
/// `outline`, kept inside `image`, the first of these that covers none of the text rectangles `text`
/// (all in widget coordinates); when each covers some text, the one that covers least.
QRectF tagRect(const QRectF &outline, const QSizeF &tag, const QRectF &image, const QList<QRectF> &text);

/// The rectangle an image of `imageSize` occupies when scaled to fit `area`, keeping its aspect ratio,
/// centred.
QRectF fitRect(const QSizeF &imageSize, const QRectF &area);

/// A normalised page rectangle in the coordinates of an image displayed at `imageRect`.
QRectF toDisplay(const QRectF &normalised, const QRectF &imageRect);

/// The map from normalised page coordinates to a display where the page, turned clockwise by
/// `quarterTurns` × 90°, fills `imageRect` (the turned page's rectangle), so outlines turn with it.
QTransform pageToDisplay(const QRectF &imageRect, int quarterTurns);

} // namespace Outlines
