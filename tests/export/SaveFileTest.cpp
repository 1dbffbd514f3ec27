#include "export/SaveFile.h"
#include "support/TestSupport.h"

#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace {

// A save replaces the file's whole content and leaves no temporary file beside it; a failed one keeps
// the old file whole and says why.
TEST(SaveFile, ReplacesOrKeepsTheOldFile)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.csv"));
    ASSERT_FALSE(Exporter::saveFile(path, "first, longer content"));
    ASSERT_FALSE(Exporter::saveFile(path, "second"));
    EXPECT_EQ(readFile(path), QByteArray("second"));
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList({"out.csv"}));

    // A destination that cannot be written fails with the system's reason and creates nothing; when no
    // temporary can be made beside the file (its name leaves no room for the temporary's suffix, as a
    // read-only folder would), the old file keeps every byte; a full device says so in its own words.
    const QString missing = dir.filePath(QStringLiteral("missing/out.json"));
    const std::optional<TabrixError> error = Exporter::saveFile(missing, "x");
    ASSERT_TRUE(error);
    EXPECT_FALSE(error->message.isEmpty());
    EXPECT_FALSE(QFile::exists(missing));

    const QString longName = dir.filePath(QString(250, u'x') + QStringLiteral(".csv"));
    ASSERT_FALSE(Exporter::saveFile(longName, "old content"));
    EXPECT_TRUE(Exporter::saveFile(longName, "new"));
    EXPECT_EQ(readFile(longName), QByteArray("old content"));

    const std::optional<TabrixError> full = Exporter::saveFile(QStringLiteral("/dev/full"), "bytes");
    ASSERT_TRUE(full);
    EXPECT_EQ(full->message, QStringLiteral("No space left on device"));
}

// A write that fails inside the stream's buffer (a nearly full disk, here a file size limit) fails the
// save with the system's reason and leaves the old file whole, however small the new content.
TEST(SaveFile, FailedBufferedWriteKeepsTheOldFile)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.csv"));
    ASSERT_FALSE(Exporter::saveFile(path, "old"));
    rlimit saved{}, small{100, RLIM_INFINITY};
    ::getrlimit(RLIMIT_FSIZE, &saved);
    small.rlim_max = saved.rlim_max;
    const auto previous = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::optional<TabrixError> error = Exporter::saveFile(path, QByteArray(600, 'x'));
    ::setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, previous);
    EXPECT_EQ(error.value_or(TabrixError{}).message, QStringLiteral("File too large"));
    EXPECT_EQ(readFile(path), QByteArray("old"));
}

} // namespace
