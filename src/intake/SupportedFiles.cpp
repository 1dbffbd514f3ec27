#include "SupportedFiles.h"

#include "model/Money.h"

#include <QCollator>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <algorithm>

namespace Pipeline {

const QSet<QString> &imageExts()
{
    static const QSet<QString> exts{QStringLiteral("png"),  QStringLiteral("jpg"),  QStringLiteral("jpeg"),
                                    QStringLiteral("heic"), QStringLiteral("heif"), QStringLiteral("tif"),
                                    QStringLiteral("tiff")};
    return exts;
}

const QSet<QString> &supported()
{
    static const QSet<QString> exts = imageExts() + QSet<QString>{QStringLiteral("pdf")};
    return exts;
}

bool isSupported(const QString &path)
{
    // suffix() is what follows the last dot of the file name: "README" and "archive." have none.
    const QString ext = QFileInfo(path).suffix();
    return !ext.isEmpty() && supported().contains(ext.toLower());
}

namespace {

// Files below `dir`, one level at a time so that bundles and symbolic links to folders are not entered.
// Without QDir::Hidden the listing leaves out hidden files and folders alike.
void collect(const QString &dir, QStringList &out)
{
    QDirIterator it(dir, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
    while (it.hasNext()) {
        it.next();
        const QFileInfo info = it.fileInfo();
        if (info.isDir()) {
            if (!info.isSymLink() && !info.isBundle())
                collect(info.filePath(), out);
        } else if (isSupported(info.fileName())) {
            out.append(info.filePath());
        }
    }
}

} // namespace

QStringList expand(const QStringList &paths)
{
    // The user's collation, as a file browser orders names: page9 before page10, "a" beside "A".
    QCollator collator(Money::userLocale());
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);

    QStringList result;
    for (const QString &path : paths) {
        const QFileInfo info(path);
        if (!info.exists())
            continue;
        if (!info.isDir()) {
            if (isSupported(path))
                result.append(path);
            continue;
        }
        QStringList found;
        collect(path, found);
        // Names equal to the collator (a.pdf, A.pdf) still get one fixed order.
        std::sort(found.begin(), found.end(), [&](const QString &a, const QString &b) {
            const int c = collator.compare(a, b);
            return c != 0 ? c < 0 : a < b;
        });
        result += found;
    }
    return result;
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
