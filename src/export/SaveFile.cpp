#include "SaveFile.h"

#include <QSaveFile>

namespace Exporter {

std::optional<TabrixError> saveFile(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    file.setDirectWriteFallback(true);
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
