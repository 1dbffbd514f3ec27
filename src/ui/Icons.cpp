#include "Icons.h"

#include <QApplication>
#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

// Resources of a static library are registered by name; the function must sit outside any namespace.
static void registerIconResources()
{
    Q_INIT_RESOURCE(icons);
}

namespace {

QString resourcePath(const QString &name)
{
    static const bool registered = [] {
        registerIconResources();
        return true;
    }();
    Q_UNUSED(registered);
    return QStringLiteral(":/icons/") + name + QStringLiteral(".svg");
}

// Draws the symbol on demand at whatever size the widget asks for, so it stays sharp on any screen.
class TintedIconEngine : public QIconEngine {
public:
    TintedIconEngine(const QString &name, const QColor &color) : m_name(name), m_color(color) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const qreal dpr = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
        const int side = std::min(rect.width(), rect.height());
        const QPixmap pm = Icons::pixmap(m_name, side, colorFor(mode), dpr);
        const QPoint topLeft(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2);
        painter->drawPixmap(QRect(topLeft, QSize(side, side)), pm);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) override
    {
        return Icons::pixmap(m_name, std::min(size.width(), size.height()), colorFor(mode));
    }

    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State, qreal scale) override
    {
        return Icons::pixmap(m_name, std::min(size.width(), size.height()), colorFor(mode), scale);
    }

    QIconEngine *clone() const override { return new TintedIconEngine(m_name, m_color); }
    QString key() const override { return QStringLiteral("TabrixTintedIcon"); }

private:
    QColor colorFor(QIcon::Mode mode) const
    {
        QColor c = m_color;
        if (mode == QIcon::Disabled)
            c.setAlphaF(c.alphaF() * 0.35f);
        return c;
    }

    QString m_name;
    QColor m_color;
};

} // namespace

namespace Icons {

bool exists(const QString &name)
{
    return QFile::exists(resourcePath(name));
}

QPixmap pixmap(const QString &name, int size, const QColor &color, qreal dpr)
{
    if (size <= 0)
        return {};
    // Queue rows draw their icons on every repaint; parse and render each variant once.
    const QString key =
        QStringLiteral("tabrix-icon/%1/%2/%3/%4").arg(name).arg(size).arg(color.rgba()).arg(dpr);
    QPixmap cached;
    if (QPixmapCache::find(key, &cached))
        return cached;
    QSvgRenderer renderer(resourcePath(name));
    if (!renderer.isValid())
        return {};
    const int px = std::max(1, qRound(size * dpr));
    QImage image(px, px, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, QRectF(0, 0, px, px));
    // Keep the symbol's shape, replace its colour.
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();
    QPixmap pm = QPixmap::fromImage(image);
    pm.setDevicePixelRatio(dpr);
    QPixmapCache::insert(key, pm);
    return pm;
}

QIcon icon(const QString &name, const QColor &color)
{
    return QIcon(new TintedIconEngine(name, color));
}

QIcon icon(const QString &name)
{
    return icon(name, QApplication::palette().color(QPalette::WindowText));
}

} // namespace Icons
