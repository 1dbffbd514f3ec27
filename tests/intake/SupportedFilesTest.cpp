#include "intake/SupportedFiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

class Folder {
public:
    QString path(const QString &name) const { return dir.filePath(name); }
    void touch(const QString &name) const
    {
        QDir().mkpath(QFileInfo(path(name)).absolutePath());
        QFile file(path(name));
        file.open(QIODevice::WriteOnly);
    }
    QStringList relative(const QStringList &paths) const
    {
        QStringList out;
        for (const QString &p : paths)
            out.append(QDir(dir.path()).relativeFilePath(p));
        return out;
    }
    QTemporaryDir dir;
};

} // namespace

// Only the lower-cased extension decides; names without one never count.
TEST(SupportedFiles, ExtensionDecides)
{
    const struct {
        const char *name;
        bool supported;
    } cases[] = {{"Scan.PDF", true},   {"photo.JPEG", true},  {"a.jpg", true},     {"b.png", true},
                 {"c.HEIC", true},     {"d.heif", true},      {"e.tif", true},     {"f.Tiff", true},
                 {"notes.txt", false}, {"README", false},     {"archive.", false}, {"pdf", false},
                 {"x.pdf.zip", false}, {"dir.d/file", false}, {"gif.gif", false}};
    for (const auto &c : cases)
        EXPECT_EQ(Pipeline::isSupported(QString::fromLatin1(c.name)), c.supported) << c.name;
    EXPECT_TRUE(Pipeline::imageExts().contains(QStringLiteral("tiff")));
    EXPECT_FALSE(Pipeline::imageExts().contains(QStringLiteral("pdf")));
}

// A folder yields its supported files sorted by full path; hidden files, hidden folders and linked
// folders are not entered.
TEST(SupportedFiles, ExpandsFolderSortedWithoutHidden)
{
    Folder f;
    for (const char *name :
         {"b.pdf", "a.png", ".hidden.pdf", "sub/c.tiff", "notes.txt", ".secret/d.pdf", "README"})
        f.touch(QString::fromLatin1(name));
    QFile::link(f.path(QStringLiteral("sub")), f.path(QStringLiteral("link")));
    const QStringList found = Pipeline::expand({f.dir.path()});
    EXPECT_EQ(f.relative(found), (QStringList{"a.png", "b.pdf", "sub/c.tiff"}));
}

// Digit runs compare by value and letter case is ignored, as in a file browser.
TEST(SupportedFiles, NaturalCaseInsensitiveOrder)
{
    Folder f;
    for (const char *name : {"page10.png", "page9.png", "Page1.png", "page2.PNG", "inv/B.pdf", "inv/a.pdf"})
        f.touch(QString::fromLatin1(name));
    EXPECT_EQ(f.relative(Pipeline::expand({f.dir.path()})),
              (QStringList{"inv/a.pdf", "inv/B.pdf", "Page1.png", "page2.PNG", "page9.png", "page10.png"}));
}

// Given locations keep their order, each folder sorted within itself; missing and unsupported ones vanish.
TEST(SupportedFiles, KeepsTopLevelOrderAndSkipsMissing)
{
    Folder f;
    for (const char *name : {"z.pdf", "a.png", "folder/2.jpg", "folder/1.jpg", "notes.txt"})
        f.touch(QString::fromLatin1(name));
    const QStringList given{f.path("z.pdf"), f.path("folder"), f.path("gone.pdf"), f.path("notes.txt"),
                            f.path("a.png")};
    EXPECT_EQ(f.relative(Pipeline::expand(given)),
              (QStringList{"z.pdf", "folder/1.jpg", "folder/2.jpg", "a.png"}));
}

// Paths naming the same file through "." or ".." agree; a symbolic link keeps its own name.
TEST(SupportedFiles, StandardPathCleansWithoutResolvingLinks)
{
    Folder f;
    f.touch(QStringLiteral("sub/a.pdf"));
    QFile::link(f.path(QStringLiteral("sub")), f.path(QStringLiteral("link")));
    const QString direct = Pipeline::standardPath(f.path(QStringLiteral("sub/a.pdf")));
    EXPECT_EQ(Pipeline::standardPath(f.path(QStringLiteral("sub/./x/../a.pdf"))), direct);
    EXPECT_EQ(Pipeline::standardPath(f.path(QStringLiteral("sub//a.pdf"))), direct);
    EXPECT_NE(Pipeline::standardPath(f.path(QStringLiteral("link/a.pdf"))), direct);
    EXPECT_TRUE(QDir::isAbsolutePath(Pipeline::standardPath(QStringLiteral("relative/b.png"))));
}
