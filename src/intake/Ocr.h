#pragma once

#include "model/RuleSet.h"
#include "model/TabrixError.h"
#include "model/TextLine.h"

#include <QImage>
#include <QList>
#include <QString>
#include <QStringList>
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

/// Where full rules look for Tesseract models more accurate than the system's, in order: the folder named by
/// TABRIX_TESSDATA, "tessdata" beside the program, then PREFIX/share/tabrix/tessdata of the installation.
QStringList modelFolders();

/// The first of `folders` that holds a model for every language of `languages` ("eng+deu" needs
/// eng.traineddata and deu.traineddata); empty when none does, which means the system's models.
QString modelFolder(const QString &languages, const QStringList &folders);

/// A Tesseract engine for `languages` reading by `rules`: Core with the system's models and the plain
/// procedure, Full with modelFolder(languages, modelFolders()) when there is one and the procedure tuned for
/// scans. Loading the model takes about 0.1 s; an engine serves one thread. A failure to load is reported by
/// every recognize() call, so the documents that need it fail.
std::unique_ptr<Engine> createTesseract(const QString &languages, RuleSet rules);

/// The same with the model folder given: empty means the system's; a folder whose models do not load
/// falls back to the system's too.
std::unique_ptr<Engine> createTesseract(const QString &languages, const QString &modelFolder, RuleSet rules);

/// This thread's Tesseract engine for languages() and `rules`, created on first use and kept for the
/// thread's life: an engine is not safe to share between threads and too slow to create per page.
Engine &threadEngine(RuleSet rules);

/// `engine`'s lines of `image`; with Full rules, amounts the recogniser split at the decimal point are
/// joined again (see AmountRepair.h). Fails as Engine::recognize does.
Expected<QList<TextLine>> read(Engine &engine, const QImage &image, int page, RuleSet rules);

} // namespace Ocr
