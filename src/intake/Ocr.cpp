#include "Ocr.h"

#include "Engines.h"
#include "PageImage.h"
#include "Pipeline.h"
#include "model/Money.h"

#include <QLocale>

namespace Ocr {

QString languages()
{
    const QString chosen = qEnvironmentVariable("TABRIX_OCR_LANGUAGES").trimmed();
    if (!chosen.isEmpty())
        return chosen;
    // Tesseract names languages by their ISO 639-2/T code; one whose data is not installed is skipped
    // when the engine loads, so English alone remains.
    const QString local = QLocale::languageToCode(Money::userLocale().language(), QLocale::ISO639Part2T);
    const QString english = QStringLiteral("eng");
    return local.isEmpty() || local == english ? english : english + u'+' + local;
}

namespace {

// Stands in for an engine that could not be made, so the documents that need one fail with the reason.
class FailedEngine final : public Engine {
public:
    explicit FailedEngine(const QString &reason)
        : m_error{QStringLiteral("Text recognition failed: ") + reason}
    {
    }
    Expected<QList<TextLine>> recognize(const QImage &, int) override { return m_error; }

private:
    TabrixError m_error;
};

} // namespace

std::unique_ptr<Engine> createTesseract(const QString &languages)
{
    const Engines::Module &module = Engines::module();
    if (!module.createTesseract)
        return std::make_unique<FailedEngine>(module.error);
    return std::unique_ptr<Engine>(module.createTesseract(languages.toUtf8().constData()));
}

Engine &threadEngine()
{
    struct Cached {
        QString languages;
        std::unique_ptr<Engine> engine;
    };
    thread_local Cached cached;
    const QString wanted = languages();
    if (!cached.engine || cached.languages != wanted)
        cached = {wanted, createTesseract(wanted)};
    return *cached.engine;
}

} // namespace Ocr

Expected<QList<TextLine>> Pipeline::ocr(const QImage &image, int page)
{
    return Ocr::threadEngine().recognize(PageImage::toGrey(image).image, page);
}
