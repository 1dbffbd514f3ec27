#include "PageRecognition.h"

#include "Ocr.h"
#include "PageImage.h"

namespace Pipeline {

Expected<RecognizedPage> recognizePage(const QImage &image, int page, const LoadOptions &options)
{
    const PageImage::Grey grey = PageImage::toGrey(image);
    Ocr::Engine &engine = options.ocr ? *options.ocr : Ocr::threadEngine(options.rules);
    auto lines = Ocr::read(engine, grey.image, page, options.rules);
    if (auto *failed = std::get_if<TabrixError>(&lines))
        return *failed;
    return RecognizedPage{std::get<QList<TextLine>>(std::move(lines)), PageImage::compact(image, grey)};
}

} // namespace Pipeline
