#pragma once

#include "LoadOptions.h"

#include "model/PageData.h"
#include "model/TabrixError.h"

#include <QList>
#include <QString>

namespace Pipeline {

/// Loads the bytes of a PNG, JPEG, TIFF (at most 30 frames) or HEIC/HEIF image, upright and at most 3000 px
/// on its longer side, and recognises its text. Fails with "Can't open image", "Image has no frames",
/// "Couldn't decode image" or the recogniser's "Text recognition failed: …".
Expected<QList<PagePtr>> loadImage(const QByteArray &bytes, const LoadOptions &options, const Report &report);

} // namespace Pipeline
