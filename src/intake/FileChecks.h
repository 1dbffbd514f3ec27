#pragma once

#include "model/TabrixError.h"

#include <QByteArray>
#include <QString>

namespace Pipeline {

/// Files larger than this are refused rather than read into memory.
constexpr qint64 maxFileBytes = qint64(1) << 30;

/// The bytes of the regular file at `path`, which is opened once, non-blocking, and judged by what was
/// opened (fstat on the descriptor): a name swapped for a named pipe or a device after any earlier look
/// is refused and never waited on. Otherwise `what` and the reason ("Can't open PDF: No such file or
/// directory", "…: not a regular file", "…: File name too long", "…: the file is larger than 1 GiB").
/// Names with bytes that are not UTF-8 (NativeNames.h) open as given, relative or absolute.
Expected<QByteArray> readRegularFile(const QString &path, const char *what);

} // namespace Pipeline
