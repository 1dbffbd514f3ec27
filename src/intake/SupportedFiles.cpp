#include "SupportedFiles.h"

#include "NativeNames.h"
#include "model/Money.h"

#include <QCollator>
#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <sys/stat.h>

namespace Pipeline {

const QSet<QString> &imageExtensions()
{
    static const QSet<QString> exts{QStringLiteral("png"),  QStringLiteral("jpg"),  QStringLiteral("jpeg"),
                                    QStringLiteral("heic"), QStringLiteral("heif"), QStringLiteral("tif"),
                                    QStringLiteral("tiff")};
    return exts;
}

const QSet<QString> &supportedExtensions()
{
    static const QSet<QString> exts = imageExtensions() + QSet<QString>{QStringLiteral("pdf")};
    return exts;
}

bool isSupported(const QString &path)
{
    // suffix() is what follows the last dot of the file name: "README" and "archive." have none.
    const QString ext = QFileInfo(path).suffix();
    return !ext.isEmpty() && supportedExtensions().contains(ext.toLower());
}

namespace {

// Files below `dir`, read with the system's own names so that none is lost to decoding. Hidden files and
// folders are left out; symbolic links to folders and bundles are not entered; devices, pipes and
// sockets inside folders are not documents and are passed over.
void collect(const QString &dir, QList<Found> &out)
{
    DIR *listing = ::opendir(nativeName(dir).constData());
    if (!listing) {
        out.append(Found{dir, qt_error_string(errno)});
        return;
    }
    QList<std::pair<QString, bool>> names; // and whether the listing says it is a folder
    while (const dirent *entry = ::readdir(listing)) {
        if (entry->d_name[0] != '.')
            names.append({decodeNativeName(QByteArray(entry->d_name)), entry->d_type == DT_DIR});
    }
    ::closedir(listing);
    for (const auto &[name, listedAsFolder] : std::as_const(names)) {
        const QString path = dir.endsWith(u'/') ? dir + name : dir + u'/' + name;
        const QByteArray native = nativeName(path);
        struct stat target {
        }, link{};
        if (::stat(native.constData(), &target) != 0 || ::lstat(native.constData(), &link) != 0) {
            // Vanished, or a link to nothing, is passed over; a document or folder that is there but
            // cannot be looked at (a path longer than the system takes) fails by name.
            const int reason = errno;
            if (reason != ENOENT && (listedAsFolder || isSupported(name)))
                out.append(Found{path, qt_error_string(reason)});
            continue;
        }
        if (S_ISDIR(target.st_mode)) {
            if (!S_ISLNK(link.st_mode) && (hasUndecodableBytes(path) || !QFileInfo(path).isBundle()))
                collect(path, out);
        } else if (S_ISREG(target.st_mode) && isSupported(name)) {
            out.append(Found{path, {}});
        }
    }
}

} // namespace

QList<Found> expandReporting(const QStringList &paths)
{
    // The user's collation, as a file browser orders names: page9 before page10, "a" beside "A".
    QCollator collator(Money::userLocale());
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);

    QList<Found> result;
    for (const QString &path : paths) {
        struct stat info {};
        if (::stat(nativeName(path).constData(), &info) != 0) {
            result.append(Found{path, qt_error_string(errno)});
            continue;
        }
        if (!S_ISDIR(info.st_mode)) {
            if (isSupported(path))
                result.append(
                    Found{path, S_ISREG(info.st_mode) ? QString() : QStringLiteral("not a regular file")});
            continue;
        }
        QList<Found> found;
        collect(path, found);
        // Names equal to the collator (a.pdf, A.pdf) still get one fixed order.
        std::sort(found.begin(), found.end(), [&](const Found &a, const Found &b) {
            const int c = collator.compare(a.path, b.path);
            return c != 0 ? c < 0 : a.path < b.path;
        });
        result += found;
    }
    return result;
}

QList<Found> withoutRepeats(const QList<Found> &found, QSet<QString> &known)
{
    QList<Found> kept;
    for (const Found &location : found) {
        const QString standard = standardPath(location.path);
        if (!known.contains(standard)) {
            known.insert(standard);
            kept.append(location);
        }
    }
    return kept;
}

QString standardPath(const QString &path)
{
    return QDir::cleanPath(QDir::current().absoluteFilePath(path));
}

QString noSupportedFilesMessage()
{
    return QStringLiteral("No supported files found. Tabrix reads PDF, PNG, JPEG, HEIC and TIFF files.");
}

} // namespace Pipeline
