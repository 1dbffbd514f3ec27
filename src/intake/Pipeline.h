#pragma once

#include "model/DocStatus.h"
#include "model/PageData.h"
#include "model/RuleSet.h"
#include "model/TabrixError.h"

#include <QImage>
#include <QList>
#include <QString>
#include <functional>

namespace Ocr {
class Engine;
}

/// Loading documents: files to pages with text lines. Runs on any thread; touches no shared state.
namespace Pipeline {

/// Progress callback: the in-progress status (Reading or Recognizing) and a fraction 0…1.
/// Called from the loading threads, possibly two at once, and must return at once; the receiver posts it
/// to wherever it is needed. May be empty.
using Report = std::function<void(DocStatus::Kind status, double progress)>;

struct LoadOptions {
    /// False where no one will look at the pages (the CLI): pages with enough digital text are not
    /// rasterised and PageData::image stays null. Pages that need recognition are still rendered for OCR.
    bool renderImages = true;
    /// The recogniser; null means each loading thread's own Tesseract engine for `rules` (Ocr::threadEngine).
    /// One passed in is used from the calling thread only, so its PDF pages are read one at a time.
    Ocr::Engine *ocr = nullptr;
    /// Threads reading the pages of one PDF: the calling one plus helpers from the global thread pool, taken
    /// only when free at once. 0: as many as the machine has cores. The batch command, which already reads
    /// several documents at once, passes 1.
    int threads = 0;
    /// Core reads scans with the plain recognition procedure; Full adds what we do for receipts and scans.
    RuleSet rules = RuleSet::Full;
};

/// loadPDF (PdfLoader.h) for ".pdf", loadImage (ImageLoader.h) for the image extensions, "Unsupported
/// file type" otherwise (extensions compared lower-cased). The file is opened once and read whole
/// (readRegularFile, FileChecks.h, with its failures); a file of zero bytes fails with "The file is
/// empty".
Expected<QList<PagePtr>> load(const QString &path, const LoadOptions &options, const Report &report);

/// `pages` with the cut recorded on the first page (PageData::pagesRead, pagesInFile) when `read` is
/// less than `inFile`.
QList<PagePtr> noteCut(QList<PagePtr> pages, int read, int inFile);

/// The text lines of `image` as the calling thread's Tesseract engine reads them by `rules`, each tagged
/// with `page`.
Expected<QList<TextLine>> ocr(const QImage &image, int page, RuleSet rules = RuleSet::Full);

} // namespace Pipeline
