#include "PageImage.h"

#include <algorithm>

namespace PageImage {

Grey toGrey(const QImage &image)
{
    Grey out;
    if (image.isNull())
        return out;
    if (image.format() == QImage::Format_Grayscale8) {
        out.image = image;
        return out;
    }
    // Channel spread above this is colour; below it, the noise of scanners and JPEG chroma.
    constexpr int colourSpread = 32;
    const QImage::Format wanted = image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32;
    const QImage src = image.format() == wanted ? image : image.convertToFormat(wanted);
    out.image = QImage(src.size(), QImage::Format_Grayscale8);
    out.image.setDotsPerMeterX(src.dotsPerMeterX());
    out.image.setDotsPerMeterY(src.dotsPerMeterY());
    const bool alpha = src.hasAlphaChannel();
    bool colour = false;
    for (int y = 0; y < src.height(); ++y) {
        const auto *in = reinterpret_cast<const QRgb *>(src.constScanLine(y));
        uchar *grey = out.image.scanLine(y);
        for (int x = 0; x < src.width(); ++x) {
            QRgb p = in[x];
            int r = qRed(p), g = qGreen(p), b = qBlue(p);
            if (alpha) {
                // Transparent regions read as white paper, not black.
                const int a = qAlpha(p);
                r = (r * a + 255 * (255 - a)) / 255;
                g = (g * a + 255 * (255 - a)) / 255;
                b = (b * a + 255 * (255 - a)) / 255;
            }
            colour |= std::max({r, g, b}) - std::min({r, g, b}) > colourSpread;
            grey[x] = uchar((r * 77 + g * 150 + b * 29) >> 8);
        }
    }
    out.hasColour = colour;
    return out;
}

} // namespace PageImage
