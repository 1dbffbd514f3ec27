#pragma once

#include <QByteArray>
#include <QString>

/// File names as the system stores them: bytes, usually UTF-8 but not always. A byte that is not part of
/// valid UTF-8 is carried in a QString as the lone surrogate U+DC00 + byte (U+DC80…U+DCFF), so that every
/// name survives the trip QString → bytes unchanged, which QFile::encodeName does not promise.
namespace Pipeline {

/// The name as a QString: valid UTF-8 decoded, any other byte escaped as above.
QString decodeNativeName(const QByteArray &bytes);

/// The bytes of a name from decodeNativeName (or any QString: its UTF-8 with escapes turned back).
QByteArray nativeName(const QString &path);

/// True when `path` carries an escaped byte, so Qt and the decoders cannot open it by its QString.
bool hasUndecodableBytes(const QString &path);

/// The name for a one-line message: escaped bytes as "\xNN", control characters as "\n", "\t" or "\xNN".
QString displayName(const QString &path);

} // namespace Pipeline
