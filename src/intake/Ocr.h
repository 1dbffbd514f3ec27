#pragma once

#include "model/TabrixError.h"
#include "model/TextLine.h"

#include <QImage>
#include <QList>
#include <QString>
#include <memory>

/// On-device text recognition behind a small interface, so that the store and tests can run the pipeline
/// with a recogniser of their own.
namespace Ocr {

class Engine {
public:
    virtual ~Engine() = default;
    /// The lines of text in `image`, each tagged with `page`, with normalised top-left rectangles, in the
    /// order the recogniser reads them. An image's dots-per-metre, when set, is taken as its resolution.
    /// Fails with "Text recognition failed: " and the reason.
    virtual Expected<QList<TextLine>> recognize(const QImage &image, int page) = 0;
};

/// The Tesseract languages to load, e.g. "eng+deu": TABRIX_OCR_LANGUAGES when set, otherwise English plus
/// the language of the user's locale when its data is installed.
QString languages();

/// A Tesseract engine for `languages`. Loading the model takes about 0.1 s; an engine serves one thread.
/// A failure to load is reported by every recognize() call, so the documents that need it fail.
std::unique_ptr<Engine> createTesseract(const QString &languages);

/// This thread's Tesseract engine for languages(), created on first use and kept for the thread's life:
/// an engine is not safe to share between threads and too slow to create per page.
Engine &threadEngine();

} // namespace Ocr
