#include "SaveFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <cerrno>

namespace Exporter {

namespace {

/// Why `file` took fewer bytes than it was given: Qt's reason, or the system's when the last write stopped
/// short without Qt setting one (a disk that filled up part way).
QString shortWrite(const QFileDevice &file, int reason)
{
    if (file.error() != QFileDevice::NoError || reason == 0)
        return file.errorString();
    return qt_error_string(reason);
}

/// Devices and pipes (/dev/stdout, a named pipe) cannot be replaced by a renamed file.
std::optional<TabrixError> writeDirectly(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        return TabrixError{file.errorString()};
    errno = 0;
    if (file.write(bytes) != bytes.size())
        return TabrixError{shortWrite(file, errno)};
    file.close();
    if (file.error() != QFileDevice::NoError)
        return TabrixError{file.errorString()};
    return std::nullopt;
}

} // namespace

std::optional<TabrixError> saveFile(const QString &path, const QByteArray &bytes)
{
    const QFileInfo info(path);
    if (info.exists() && !info.isFile() && !info.isDir())
        return writeDirectly(path, bytes);
    QSaveFile file(path);
    // Unbuffered: a write that fails inside Qt's buffer surfaces only at commit, which then renames the
    // short file over the old one anyway (a full disk lost exports under 16 KiB that way).
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return TabrixError{file.errorString()};
    errno = 0;
    if (file.write(bytes) != bytes.size()) {
        const QString reason = shortWrite(file, errno);
        file.cancelWriting();
        return TabrixError{reason};
    }
    if (!file.commit())
        return TabrixError{file.errorString()};
    return std::nullopt;
}

} // namespace Exporter
