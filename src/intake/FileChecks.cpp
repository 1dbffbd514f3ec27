#include "NativeNames.h"
#include "Pipeline.h"

#include <QLoggingCategory>
#include <QString>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Pipeline {

std::optional<TabrixError> checkRegularFile(const QString &path, const char *what)
{
    const auto failed = [&](const QString &reason) {
        return TabrixError{QString::fromLatin1(what) + QStringLiteral(": ") + reason};
    };
    // Non-blocking, so that opening a named pipe returns at once instead of waiting for a writer.
    const int fd = ::open(nativeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return failed(qt_error_string(errno));
    struct stat info {};
    const bool regular = ::fstat(fd, &info) == 0 && S_ISREG(info.st_mode);
    ::close(fd);
    if (!regular)
        return failed(QStringLiteral("not a regular file"));
    return std::nullopt;
}

QList<PagePtr> noteCut(QList<PagePtr> pages, int read, int inFile)
{
    if (read >= inFile || pages.isEmpty())
        return pages;
    auto first = std::make_shared<PageData>(*pages.first());
    first->pagesRead = read;
    first->pagesInFile = inFile;
    pages.first() = std::move(first);
    return pages;
}

namespace {

QtMessageHandler previousHandler = nullptr;

bool isDecoderChatter(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type != QtDebugMsg && type != QtInfoMsg && type != QtWarningMsg)
        return false;
    const QLatin1StringView category(context.category ? context.category : "");
    return category.startsWith(QLatin1String("qt.gui.imageio")) ||
           category.startsWith(QLatin1String("qt.imageformats")) ||
           message.startsWith(QLatin1String("libpng")) || message.startsWith(QLatin1String("libtiff")) ||
           message.startsWith(QLatin1String("TIFF"));
}

void filterDecoderChatter(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (!isDecoderChatter(type, context, message) && previousHandler)
        previousHandler(type, context, message);
}

} // namespace

void quietDecoderWarnings()
{
    if (!previousHandler)
        previousHandler = qInstallMessageHandler(filterDecoderChatter);
}

} // namespace Pipeline
