#include "StandardOutput.h"

#include <QString>
#include <cerrno>
#include <cstdio>

std::optional<TabrixError> writeStandardOutput(const QByteArray &bytes)
{
    errno = 0;
    const size_t written = std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    // The stream buffers: a full disk or a closed pipe shows only when the buffer is flushed.
    if (written == size_t(bytes.size()) && std::fflush(stdout) == 0 && !std::ferror(stdout))
        return std::nullopt;
    const int reason = errno;
    return TabrixError{reason ? qt_error_string(reason) : QStringLiteral("write error")};
}
