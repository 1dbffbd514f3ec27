#include "SymbolLabel.h"

#include "Icons.h"

#include <QPainter>

SymbolLabel::SymbolLabel(const QString &name, int size, const QColor &color, QWidget *parent)
    : QWidget(parent), m_name(name), m_size(size), m_color(color)
{
    setFixedSize(size, size);
}

void SymbolLabel::setSymbol(const QString &name, const QColor &color)
{
    if (name == m_name && color == m_color)
        return;
    m_name = name;
    m_color = color;
    update();
}

void SymbolLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.drawPixmap(0, 0, Icons::pixmap(m_name, m_size, m_color, devicePixelRatioF()));
}
