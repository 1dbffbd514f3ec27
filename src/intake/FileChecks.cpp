#include "FileChecks.h"

#include "NativeNames.h"

#include <QString>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Pipeline {

namespace {

/// Closes the descriptor however the read ends.
struct Descriptor {
    int fd;
    ~Descriptor()
    {
        if (fd >= 0)
            ::close(fd);
    }
};

} // namespace

Expected<QByteArray> readRegularFile(const QString &path, const char *what)
{
    const auto failed = [&](const QString &reason) {
        return TabrixError{QString::fromLatin1(what) + QStringLiteral(": ") + reason};
    };
    // Non-blocking, so that opening a named pipe returns at once instead of waiting for a writer.
    const Descriptor file{::open(nativeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)};
    if (file.fd < 0)
        return failed(qt_error_string(errno));
    struct stat info {};
    if (::fstat(file.fd, &info) != 0)
        return failed(qt_error_string(errno));
    if (!S_ISREG(info.st_mode))
        return failed(QStringLiteral("not a regular file"));
    if (info.st_size > maxFileBytes)
        return failed(QStringLiteral("the file is larger than 1 GiB"));
    QByteArray bytes;
    bytes.reserve(qsizetype(info.st_size));
    char buffer[65536];
    for (;;) {
        const ssize_t n = ::read(file.fd, buffer, sizeof buffer);
        if (n == 0)
            return bytes;
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return failed(qt_error_string(errno));
        if (bytes.size() + n > maxFileBytes) // grew while being read
            return failed(QStringLiteral("the file is larger than 1 GiB"));
        bytes.append(buffer, n);
    }
}

} // namespace Pipeline
