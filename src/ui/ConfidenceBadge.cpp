#include "ConfidenceBadge.h"

#include "Outlines.h"

#include <QPainter>
#include <QPainterPath>
#include <cmath>

namespace {

constexpr int badgeWidth = 58;

} // namespace

ConfidenceBadge::ConfidenceBadge(QWidget *parent) : QWidget(parent)
{
    setFixedWidth(badgeWidth);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setState(0.0, false, true);
}

BadgeLook ConfidenceBadge::look(double confidence, bool edited, bool empty, const QStringList &doubts)
{
    if (!doubts.isEmpty())
        return {QStringLiteral("Check"), Theme::Tone::Orange, doubts.join(QLatin1Char('\n'))};
    if (edited)
        return {QStringLiteral("Edited"), Theme::Tone::Blue, QStringLiteral("Edited by you")};
    const QString tooltip = QStringLiteral("Extraction confidence");
    if (empty && confidence == 0.0)
        return {QStringLiteral("Not found"), Theme::Tone::Orange, tooltip};
    const QString percent = QString::number(std::lround(confidence * 100.0)) + QLatin1Char('%');
    return {percent, confidence < Outlines::confident ? Theme::Tone::Orange : Theme::Tone::Green, tooltip};
}

void ConfidenceBadge::setState(double confidence, bool edited, bool empty, const QStringList &doubts)
{
    BadgeLook next = look(confidence, edited, empty, doubts);
    if (next == m_look)
        return;
    m_look = std::move(next);
    setToolTip(m_look.tooltip);
    setAccessibleName(m_look.text);
    update();
}

QSize ConfidenceBadge::sizeHint() const
{
    return QSize(badgeWidth, QFontMetrics(Theme::caption()).height() + 6);
}

void ConfidenceBadge::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor c = Theme::color(m_look.tone);
    const QRectF r = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath path;
    path.addRoundedRect(r, 5, 5);
    painter.fillPath(path, Theme::faded(c, 0.18));
    QFont font = Theme::caption();
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(c);
    painter.drawText(r, Qt::AlignCenter, m_look.text);
}
