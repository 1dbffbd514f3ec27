#pragma once

#include "LoadOptions.h"

#include "model/PageData.h"
#include "model/TabrixError.h"

#include <QImage>
#include <QList>
#include <QString>

/// Loading documents: files to pages with text lines. Runs on any thread; touches no shared state.
namespace Pipeline {

/// loadPDF (PdfLoader.h) for ".pdf", loadImage (ImageLoader.h) for the image extensions, "Unsupported
/// file type" otherwise (extensions compared lower-cased). The file is opened once and read whole
/// (readRegularFile, FileChecks.h, with its failures); a file of zero bytes fails with "The file is
/// empty".
Expected<QList<PagePtr>> load(const QString &path, const LoadOptions &options, const Report &report);

/// The text lines of `image` as the calling thread's Tesseract engine reads them by `rules`, each tagged
/// with `page`.
Expected<QList<TextLine>> ocr(const QImage &image, int page, RuleSet rules = RuleSet::Full);

} // namespace Pipeline
