#include "FileChecks.h"

#include "NativeNames.h"

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

} // namespace Pipeline
