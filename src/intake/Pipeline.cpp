#include "Pipeline.h"

#include "ImageLoader.h"
#include "NativeNames.h"
#include "PageRecognition.h"
#include "PdfLoader.h"
#include "SupportedFiles.h"

#include <QFileInfo>

namespace Pipeline {

Expected<QList<PagePtr>> load(const QString &given, const LoadOptions &options, const Report &report)
{
    const QString ext = QFileInfo(given).suffix().toLower();
    // A name that is not valid UTF-8 is read through a link with a name Qt and the decoders can open.
    const auto [path, keepAlive] = openablePath(given);
    // Said apart from a damaged file: an empty one is usually a download or copy that did not finish.
    if (const QFileInfo info(path); info.isFile() && info.size() == 0)
        return TabrixError{QStringLiteral("The file is empty")};
    if (ext == QLatin1String("pdf"))
        return loadPDF(path, options, report);
    if (imageExtensions().contains(ext))
        return loadImage(path, options, report);
    return TabrixError{QStringLiteral("Unsupported file type")};
}

Expected<QList<TextLine>> ocr(const QImage &image, int page, RuleSet rules)
{
    LoadOptions options;
    options.rules = rules;
    auto read = recognizePage(image, page, options);
    if (auto *failed = std::get_if<TabrixError>(&read))
        return *failed;
    return std::get<RecognizedPage>(std::move(read)).lines;
}

} // namespace Pipeline
