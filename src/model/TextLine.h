#pragma once

#include <QRectF>
#include <QString>

// Every rectangle in the core is a normalised page rectangle: fractions 0…1 of the page
// (PDF crop box or orientation-corrected image), origin top left, y growing downwards.

/// One line of text read from one page.
struct TextLine {
    QString text;
    QRectF rect;  ///< normalised page coordinates
    int page = 0; ///< zero-based page index

    bool operator==(const TextLine &) const = default;
};

/// Where something lies on a page.
struct PageBox {
    int page = 0;
    QRectF rect; ///< normalised page coordinates

    bool operator==(const PageBox &) const = default;
};

/// The smallest rectangle holding both; unlike QRectF::united it keeps zero-sized rectangles.
inline QRectF unitedRect(const QRectF &a, const QRectF &b)
{
    const double left = std::min(a.left(), b.left());
    const double top = std::min(a.top(), b.top());
    const double right = std::max(a.right(), b.right());
    const double bottom = std::max(a.bottom(), b.bottom());
    return QRectF(left, top, right - left, bottom - top);
}
