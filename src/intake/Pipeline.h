#pragma once

#include "model/DocStatus.h"
#include "model/PageData.h"
#include "model/TabrixError.h"

#include <QList>
#include <QString>
#include <functional>

/// Loading documents: files to pages with text lines. Runs on any thread; touches no shared state.
namespace Pipeline {

/// Progress callback: the in-progress status (Reading or Recognizing) and a fraction 0…1.
/// Called from the loading thread; the receiver posts it to wherever it is needed.
using Report = std::function<void(DocStatus::Kind status, double progress)>;

struct LoadOptions {
    /// False where no one will look at the pages (the CLI): pages with enough digital text are not
    /// rasterised and PageData::image stays null. Pages that need recognition are still rendered for OCR.
    bool renderImages = true;
};

/// Loads a PDF: at most 40 pages, digital text where a page has at least 25 characters, OCR otherwise.
Expected<QList<PagePtr>> loadPDF(const QString &path, const LoadOptions &options, const Report &report);

/// Loads a PNG, JPEG, TIFF (at most 30 frames) or HEIC/HEIF image and recognises its text.
Expected<QList<PagePtr>> loadImage(const QString &path, const LoadOptions &options, const Report &report);

/// loadPDF for ".pdf", loadImage for the other supported extensions.
Expected<QList<PagePtr>> load(const QString &path, const LoadOptions &options, const Report &report);

} // namespace Pipeline
