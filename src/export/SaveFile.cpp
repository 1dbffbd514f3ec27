#include "SaveFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace Exporter {

namespace {

/// Devices and pipes (/dev/stdout, a named pipe) cannot be replaced by a renamed file.
std::optional<TabrixError> writeDirectly(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        return TabrixError{file.errorString()};
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
    if (!file.open(QIODevice::WriteOnly))
        return TabrixError{file.errorString()};
    if (file.write(bytes) != bytes.size()) {
        const QString reason = file.errorString();
        file.cancelWriting();
        return TabrixError{reason};
    }
    if (!file.commit())
        return TabrixError{file.errorString()};
    return std::nullopt;
}

} // namespace Exporter
