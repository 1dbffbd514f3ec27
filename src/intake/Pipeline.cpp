#include "Pipeline.h"

#include "FileChecks.h"
#include "ImageLoader.h"
#include "PageRecognition.h"
#include "PdfLoader.h"
#include "SupportedFiles.h"

#include <QFileInfo>

namespace Pipeline {

Expected<QList<PagePtr>> load(const QString &path, const LoadOptions &options, const Report &report)
{
    const QString ext = QFileInfo(path).suffix().toLower();
    const bool pdf = ext == QLatin1String("pdf");
    if (!pdf && !imageExtensions().contains(ext))
        return TabrixError{QStringLiteral("Unsupported file type")};
    // Opened once and read whole: the decoders see exactly the file that was checked.
    auto read = readRegularFile(path, pdf ? "Can't open PDF" : "Can't open image");
    if (auto *failed = std::get_if<TabrixError>(&read))
        return *failed;
    const QByteArray bytes = std::get<QByteArray>(std::move(read));
    // Said apart from a damaged file: an empty one is usually a download or copy that did not finish.
    if (bytes.isEmpty())
        return TabrixError{QStringLiteral("The file is empty")};
    return pdf ? loadPDF(bytes, options, report) : loadImage(bytes, options, report);
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
