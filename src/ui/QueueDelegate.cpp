#include "QueueDelegate.h"

#include "Icons.h"
#include "QueueModel.h"
#include "Theme.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int padding = 8;
constexpr int iconSize = 22;
constexpr int gap = 8;
constexpr int barHeight = 4;

} // namespace

QSize QueueDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    const QFontMetrics name(option.font);
    const QFontMetrics caption(Theme::caption());
    return QSize(200, padding + name.height() + 2 + caption.height() + 3 + barHeight + padding);
}

void QueueDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QRect r = option.rect;
    const QPalette &pal = option.palette;

    // A soft rounded selection keeps the tinted status texts readable.
    if (option.state & QStyle::State_Selected) {
        QPainterPath path;
        path.addRoundedRect(QRectF(r).adjusted(3, 1, -3, -1), 6, 6);
        painter->fillPath(path, Theme::faded(Theme::accent(), 0.22));
    } else if (option.state & QStyle::State_MouseOver) {
        QPainterPath path;
        path.addRoundedRect(QRectF(r).adjusted(3, 1, -3, -1), 6, 6);
        painter->fillPath(path, Theme::faded(Theme::accent(), 0.07));
    }

    const QColor tint = index.data(QueueModel::TintRole).value<QColor>();
    const QFont nameFont = option.font;
    const QFont captionFont = Theme::caption();
    const QFontMetrics nameMetrics(nameFont);
    const QFontMetrics captionMetrics(captionFont);

    const int nameTop = r.top() + padding;
    const int statusTop = nameTop + nameMetrics.height() + 2;
    const int left = r.left() + padding + 4;
    const int textLeft = left + iconSize + gap;
    int right = r.right() - padding - 4;

    const QString iconName = index.data(QueueModel::IconNameRole).toString();
    const int iconTop = nameTop + (nameMetrics.height() + 2 + captionMetrics.height() - iconSize) / 2;
    painter->drawPixmap(left, iconTop,
                        Icons::pixmap(iconName, iconSize, tint, painter->device()->devicePixelRatioF()));

    // Right-hand marks on the name line: the approval seal, the flag mark, then the duplicate word.
    if (index.data(QueueModel::ApprovedRole).toBool()) {
        const int seal = 16;
        painter->drawPixmap(right - seal, nameTop + (nameMetrics.height() - seal) / 2,
                            Icons::pixmap(QStringLiteral("checkmark.seal.fill"), seal, Theme::green(),
                                          painter->device()->devicePixelRatioF()));
        right -= seal + 6;
    }
    if (index.data(QueueModel::FlaggedRole).toBool()) {
        const int mark = 14;
        painter->drawPixmap(right - mark, nameTop + (nameMetrics.height() - mark) / 2,
                            Icons::pixmap(QStringLiteral("exclamationmark.triangle.fill"), mark,
                                          Theme::orange(), painter->device()->devicePixelRatioF()));
        right -= mark + 6;
    }
    if (index.data(QueueModel::DuplicateRole).toBool()) {
        const QString word = QStringLiteral("Duplicate");
        const int w = captionMetrics.horizontalAdvance(word);
        painter->setFont(captionFont);
        painter->setPen(Theme::orange());
        painter->drawText(QRect(right - w, nameTop, w, nameMetrics.height()),
                          Qt::AlignVCenter | Qt::AlignRight, word);
        right -= w + 6;
    }

    painter->setFont(nameFont);
    painter->setPen(pal.color(QPalette::Text));
    const QString name =
        nameMetrics.elidedText(index.data(Qt::DisplayRole).toString(), Qt::ElideMiddle, right - textLeft);
    painter->drawText(QRect(textLeft, nameTop, right - textLeft, nameMetrics.height()),
                      Qt::AlignVCenter | Qt::AlignLeft, name);

    // Status line: the status in its tint (secondary once ready), the amount at the right.
    const int fullRight = r.right() - padding - 4;
    const QString amount = index.data(QueueModel::AmountRole).toString();
    int statusRight = fullRight;
    if (!amount.isEmpty()) {
        const QFont amountFont = Theme::amounts();
        const QFontMetrics amountMetrics(amountFont);
        const int w = amountMetrics.horizontalAdvance(amount);
        painter->setFont(amountFont);
        painter->setPen(Theme::secondaryText());
        painter->drawText(QRect(fullRight - w, statusTop, w, captionMetrics.height()),
                          Qt::AlignVCenter | Qt::AlignRight, amount);
        statusRight = fullRight - w - 8;
    }
    const bool secondary = index.data(QueueModel::StatusSecondaryRole).toBool();
    painter->setFont(captionFont);
    painter->setPen(secondary ? Theme::secondaryText() : tint);
    const QString status = captionMetrics.elidedText(index.data(QueueModel::StatusTextRole).toString(),
                                                     Qt::ElideRight, statusRight - textLeft);
    painter->drawText(QRect(textLeft, statusTop, statusRight - textLeft, captionMetrics.height()),
                      Qt::AlignVCenter | Qt::AlignLeft, status);

    const double progress = index.data(QueueModel::ProgressRole).toDouble();
    if (progress >= 0.0) {
        const QRectF track(textLeft, statusTop + captionMetrics.height() + 3, fullRight - textLeft,
                           barHeight);
        QPainterPath trackPath;
        trackPath.addRoundedRect(track, 2, 2);
        painter->fillPath(trackPath, Theme::faded(pal.color(QPalette::Text), 0.12));
        QRectF done = track;
        done.setWidth(track.width() * std::clamp(progress, 0.0, 1.0));
        QPainterPath donePath;
        donePath.addRoundedRect(done, 2, 2);
        painter->fillPath(donePath, Theme::accent());
    }
    painter->restore();
}
