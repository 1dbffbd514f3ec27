#pragma once

#include <QByteArray>
#include <QString>
#include <memory>

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

/// A path Qt can open that leads to `path`: `path` itself, or for a name with undecodable bytes a
/// symbolic link with the same extension in a private temporary folder, removed with the returned owner.
/// Returns the path to use and the owner to keep alive while reading.
std::pair<QString, std::shared_ptr<void>> openablePath(const QString &path);

} // namespace Pipeline
