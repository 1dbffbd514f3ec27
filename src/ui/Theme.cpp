#include "Theme.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPalette>

namespace Theme {

QColor green()
{
    return QColor(0x2e, 0x9d, 0x4a);
}

QColor orange()
{
    return QColor(0xe8, 0x83, 0x00);
}

QColor blue()
{
    return QColor(0x1f, 0x6f, 0xeb);
}

QColor red()
{
    return QColor(0xd9, 0x30, 0x25);
}

QColor color(Tone tone)
{
    switch (tone) {
    case Tone::Green:
        return green();
    case Tone::Orange:
        return orange();
    case Tone::Blue:
        return blue();
    }
    return blue();
}

QColor accent()
{
    return QApplication::palette().color(QPalette::Highlight);
}

QColor secondaryText()
{
    // Opaque, so that it can be written into style sheets: window text half-way to the background.
    const QPalette palette = QApplication::palette();
    const QColor text = palette.color(QPalette::WindowText);
    const QColor back = palette.color(QPalette::Window);
    return QColor((text.red() * 45 + back.red() * 55) / 100, (text.green() * 45 + back.green() * 55) / 100,
                  (text.blue() * 45 + back.blue() * 55) / 100);
}

QColor faded(const QColor &color, double opacity)
{
    QColor c = color;
    c.setAlphaF(float(opacity));
    return c;
}

QFont caption()
{
    QFont font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() * 0.85);
    return font;
}

QFont amounts()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(caption().pointSizeF());
    return font;
}

QFont title(double factor, bool bold)
{
    QFont font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() * factor);
    font.setBold(bold);
    return font;
}

} // namespace Theme
