#pragma once

#include "model/TabrixError.h"

#include <QByteArray>
#include <optional>

/// Writes `bytes` to standard output and flushes it. Returns the system's reason ("No space left on
/// device", "Broken pipe") when any of it could not be written.
std::optional<TabrixError> writeStandardOutput(const QByteArray &bytes);
