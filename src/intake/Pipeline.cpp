#include "Pipeline.h"
#include "SupportedFiles.h"

#include <QFileInfo>

namespace Pipeline {

Expected<QList<PagePtr>> load(const QString &path, const LoadOptions &options, const Report &report)
{
    const QString ext = QFileInfo(path).suffix().toLower();
    if (ext == QLatin1String("pdf"))
        return loadPDF(path, options, report);
    if (imageExts().contains(ext))
        return loadImage(path, options, report);
    return TabrixError{QStringLiteral("Unsupported file type")};
}

} // namespace Pipeline
