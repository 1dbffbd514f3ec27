#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QString>

/// The symbols the views show ("plus", "doc.text", "checkmark.seal.fill", …), drawn from the SVG files
/// bundled with the application, so that nothing depends on the desktop's icon theme. Every symbol is
/// one shape in one colour, tinted when drawn.
namespace Icons {

/// True when a symbol of this name is bundled.
bool exists(const QString &name);

/// The symbol drawn in `color`, `size` device-independent pixels square, for a screen with pixel ratio
/// `dpr`. A null pixmap for an unknown name.
QPixmap pixmap(const QString &name, int size, const QColor &color, qreal dpr = 1.0);

/// The symbol as an icon of any size in `color`; the disabled state is drawn faded.
QIcon icon(const QString &name, const QColor &color);
/// The symbol in the palette's text colour.
QIcon icon(const QString &name);

} // namespace Icons
