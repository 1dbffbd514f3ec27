#pragma once

#include "model/TabrixError.h"

#include <QString>
#include <optional>

namespace Pipeline {

/// Nothing when `path` names a regular file that can be opened for reading; otherwise `what` and the
/// reason ("Can't open PDF: No such file or directory", "…: not a regular file"). Never blocks, even on
/// a named pipe.
std::optional<TabrixError> checkRegularFile(const QString &path, const char *what);

} // namespace Pipeline
