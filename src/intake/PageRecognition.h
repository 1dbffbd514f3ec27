#pragma once

#include "LoadOptions.h"

#include "model/TabrixError.h"
#include "model/TextLine.h"

#include <QImage>
#include <QList>

namespace Pipeline {

/// A page image after recognition.
struct RecognizedPage {
    QList<TextLine> lines; ///< tagged with the page number given
    QImage image;          ///< the page to keep for display: grey unless colour adds something
};

/// The one way a page image is recognised, for every loader: converted to grey, read by `options.ocr` or
/// else the calling thread's engine for `options.rules`, amounts repaired as those rules say.
/// Fails with the recogniser's "Text recognition failed: …".
Expected<RecognizedPage> recognizePage(const QImage &image, int page, const LoadOptions &options);

} // namespace Pipeline
