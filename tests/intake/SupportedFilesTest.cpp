#include "intake/SupportedFiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

// Only the lower-cased extension decides; a name without one never counts.
TEST(SupportedFiles, ExtensionDecides)
{
    for (const char *name :
         {"Scan.PDF", "photo.JPEG", "a.jpg", "b.png", "c.HEIC", "d.heif", "e.tif", "f.Tiff"})
        EXPECT_TRUE(Pipeline::isSupported(QString::fromLatin1(name))) << name;
    for (const char *name : {"notes.txt", "README", "archive.", "pdf", "x.pdf.zip", "dir.d/file", "a.gif"})
        EXPECT_FALSE(Pipeline::isSupported(QString::fromLatin1(name))) << name;
}

// Locations keep their order; a folder gives its supported files sorted by full path as a file browser
// sorts them (digits by value, case ignored), without hidden files, hidden folders or linked folders;
// a missing location stays in its place as a failure; repeats go only when asked, by standard path.
TEST(SupportedFiles, ExpandsInBrowserOrder)
{
    QTemporaryDir tmp;
    const QDir dir(tmp.path());
    for (const char *name : {"z.pdf", "f/page10.png", "f/page9.png", "f/Page1.png", "f/b.pdf", "f/A.pdf",
                             "f/.hidden.pdf", "f/sub/c.tiff", "f/notes.txt", "f/.secret/d.pdf"}) {
        dir.mkpath(QFileInfo(dir.filePath(name)).path());
        QFile(dir.filePath(name)).open(QIODevice::WriteOnly);
    }
    QFile::link(dir.filePath("f/sub"), dir.filePath("f/link"));
    const QList<Pipeline::Found> found =
        Pipeline::expandReporting({dir.filePath("z.pdf"), dir.filePath("f"), dir.filePath("gone.pdf"),
                                   dir.filePath("f/notes.txt"), dir.filePath("f/../f/b.pdf")});
    const auto relative = [&](const QList<Pipeline::Found> &list) {
        QStringList names;
        for (const Pipeline::Found &file : list)
            names.append(dir.relativeFilePath(file.path) + (file.error.isEmpty() ? "" : "!"));
        return names;
    };
    EXPECT_EQ(relative(found), (QStringList{"z.pdf", "f/A.pdf", "f/b.pdf", "f/Page1.png", "f/page9.png",
                                            "f/page10.png", "f/sub/c.tiff", "gone.pdf!", "f/b.pdf"}));
    QSet<QString> known{Pipeline::standardPath(dir.filePath("z.pdf"))};
    EXPECT_EQ(relative(Pipeline::withoutRepeats(found, known)),
              (QStringList{"f/A.pdf", "f/b.pdf", "f/Page1.png", "f/page9.png", "f/page10.png", "f/sub/c.tiff",
                           "gone.pdf!"}));
}
