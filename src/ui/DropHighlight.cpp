#include "DropHighlight.h"

#include "Theme.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>

DropHighlight::DropHighlight(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setObjectName(QStringLiteral("dropHighlight"));
    parent->installEventFilter(this);
    setGeometry(parent->rect());
    hide();
}

bool DropHighlight::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parent() && event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

void DropHighlight::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor accent = Theme::accent();
    QPainterPath path;
    path.addRoundedRect(QRectF(rect()).adjusted(4, 4, -4, -4), 10, 10);
    painter.fillPath(path, Theme::faded(accent, 0.10));
    painter.setPen(QPen(accent, 3.0));
    painter.drawPath(path);
}
