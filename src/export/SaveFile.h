#pragma once

#include "model/TabrixError.h"

#include <QByteArray>
#include <QString>
#include <optional>

namespace Exporter {

/// Writes `bytes` to `path`, replacing any file there. The bytes go to a temporary file beside it
/// that is moved into place, so a failed write leaves the old file byte for byte intact; where no file can
/// be made beside it (a read-only folder) the save fails rather than overwrite the file in place. Devices
/// and pipes such as /dev/stdout, which hold nothing to lose, are written directly.
/// Returns nothing on success, otherwise the error with the system's description.
std::optional<TabrixError> saveFile(const QString &path, const QByteArray &bytes);

} // namespace Exporter
