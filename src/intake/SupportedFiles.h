#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

/// Which files Tabrix reads, and how dropped or chosen locations become a flat, ordered file list.
namespace Pipeline {

/// Lower-case extensions read by the image loader: png, jpg, jpeg, heic, heif, tif, tiff.
const QSet<QString> &imageExtensions();

/// Every readable extension: imageExtensions() and pdf.
const QSet<QString> &supportedExtensions();

/// True when the lower-cased extension of `path` is in supportedExtensions(). Only the name counts, never
/// the contents; a name without an extension is never supported.
bool isSupported(const QString &path);

/// One location of a batch: a file to read, or, when `error` is not empty, a path that cannot be read and
/// the system's reason.
struct Found {
    QString path;
    QString error;
};

/// The supported files among and below `paths`, for adding to a batch. Each location is taken in the given
/// order: a supported file is kept as given, a folder contributes every supported file below it (hidden
/// files and folders and the insides of bundles left out), sorted by full path as a file browser sorts
/// (case-insensitive, digit runs by value). What cannot be read stays in its place as a failure: a missing
/// path, a folder (given or below one) that cannot be listed, a given file with a supported name that
/// is not a regular file, and a document or folder below one that cannot be looked at (a path longer
/// than the system takes). Paths keep the form they were given in; nothing is de-duplicated here. Names
/// that are not valid UTF-8 are found and carried escaped (NativeNames.h).
QList<Found> expandReporting(const QStringList &paths);

/// `found` without the locations already named, in order: those whose standardPath is in `known` or
/// appeared earlier in `found`. The kept ones are added to `known`.
QList<Found> withoutRepeats(const QList<Found> &found, QSet<QString> &known);

/// The form in which two paths naming the same file compare equal for de-duplication: absolute, cleaned
/// of "." and ".." components and repeated separators. Symbolic links are deliberately not resolved.
QString standardPath(const QString &path);

/// The message shown when a drop, a panel or a command line names nothing supported.
QString noSupportedFilesMessage();

} // namespace Pipeline
