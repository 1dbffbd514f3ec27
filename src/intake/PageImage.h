#pragma once

#include <QImage>

/// Page bitmaps between decoding, recognition and display.
namespace PageImage {

struct Grey {
    QImage image;           ///< Format_Grayscale8, same size and resolution as the source
    bool hasColour = false; ///< some pixel's channels differ by more than scanner or JPEG noise
};

/// One pass over `image`: its 8-bit grey version (luma) and whether it has colour worth keeping.
/// A null image gives a null grey image.
Grey toGrey(const QImage &image);

/// The image to keep for display: the grey version when colour adds nothing (a quarter of the memory
/// of a 32-bit page), otherwise the original.
inline QImage compact(const QImage &image, const Grey &grey)
{
    return grey.hasColour ? image : grey.image;
}

} // namespace PageImage
