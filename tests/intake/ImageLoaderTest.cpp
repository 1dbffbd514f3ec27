#include "Fixtures.h"
#include "intake/DecoderWarnings.h"
#include "intake/Pipeline.h"
#include "support/TestSupport.h"

#include <QLoggingCategory>
#include <QPainter>
#include <QProcess>
#include <QStandardPaths>
#include <gtest/gtest.h>

namespace {

class ImageLoader : public Fixtures::LoaderTest {};
class Loader : public Fixtures::LoaderTest {};

// White with a black top-left quarter, to see where the stored top-left corner ends up.
QImage marked(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter(&image).fillRect(0, 0, size.width() / 4, size.height() / 4, Qt::black);
    return image;
}

bool darkAt(const QImage &image, QPointF at)
{
    return qGray(image.pixel(int(at.x() * (image.width() - 1)), int(at.y() * (image.height() - 1)))) < 128;
}

} // namespace

// A 45-page TIFF gives its first 30 frames, each from its own page, numbered 0…29, with progress
// 0.05 + 0.85 × i / 30.
TEST_F(ImageLoader, MultiPageTiffReadsThirtyFramesInOrder)
{
    QList<QImage> frames;
    for (int i = 0; i < 45; ++i) {
        frames.append(QImage(40 + i, 30, QImage::Format_Grayscale8));
        frames.last().fill(i * 5);
    }
    Fixtures::writeGreyTiff(path("scan.tiff"), frames);
    const QList<PagePtr> loaded = pages(path("scan.tiff"));
    ASSERT_EQ(loaded.size(), 30);
    ASSERT_EQ(ocr.calls.size(), 30);
    for (int i = 0; i < 30; ++i) {
        EXPECT_EQ(ocr.calls[i].page, i);
        EXPECT_EQ(ocr.calls[i].cornerGrey, i * 5) << "frame " << i;
        EXPECT_EQ(loaded[i]->image.size(), QSize(40 + i, 30));
        EXPECT_EQ(progress[i], std::pair(DocStatus::Recognizing, 0.05 + 0.85 * i / 30));
    }
}

// The orientation tag turns the photo upright; the 3000 px limit applies to it (grey pages stay 8-bit).
TEST_F(ImageLoader, OrientationAppliedAndSizeLimited)
{
    const struct {
        int orientation;
        QSize stored, upright;
        QPointF mark; // where the stored top-left corner appears
    } cases[] = {
        // clang-format off
        {1, {400, 300}, {400, 300}, {0.05, 0.05}},
        {6, {400, 300}, {300, 400}, {0.95, 0.05}},
        {8, {400, 300}, {300, 400}, {0.05, 0.95}},
        {3, {400, 300}, {400, 300}, {0.95, 0.95}},
        {6, {4000, 3000}, {2250, 3000}, {0.95, 0.05}},
        {1, {3200, 1000}, {3000, 938}, {0.05, 0.05}},
        // clang-format on
    };
    for (const auto &c : cases) {
        Fixtures::writeJpegWithOrientation(path("photo.jpg"), marked(c.stored), c.orientation);
        const QList<PagePtr> loaded = pages(path("photo.jpg"));
        ASSERT_EQ(loaded.size(), 1);
        EXPECT_EQ(loaded[0]->image.size(), c.upright) << c.orientation;
        EXPECT_EQ(loaded[0]->image.format(), QImage::Format_Grayscale8);
        EXPECT_TRUE(darkAt(loaded[0]->image, c.mark)) << c.orientation;
        EXPECT_FALSE(darkAt(loaded[0]->image, QPointF(1, 1) - c.mark)) << c.orientation;
    }
}

// A HEIC photo decodes through libheif like any other image.
TEST_F(ImageLoader, ReadsHeic)
{
    if (QStandardPaths::findExecutable(QStringLiteral("heif-enc")).isEmpty())
        GTEST_SKIP() << "heif-enc (libheif-examples) not installed";
    marked({640, 480}).save(path("source.png"));
    ASSERT_EQ(QProcess::execute("heif-enc", {"-q", "90", "-o", path("photo.heic"), path("source.png")}), 0);
    const QList<PagePtr> loaded = pages(path("photo.heic"));
    ASSERT_EQ(loaded.size(), 1);
    EXPECT_EQ(loaded[0]->image.size(), QSize(640, 480));
    EXPECT_TRUE(darkAt(loaded[0]->image, {0.05, 0.05}));
}

// Unreadable, vanished and undecodable files of every type fail with the user's messages; a
// mislabelled image is read by its content.
TEST_F(Loader, FailuresAndMislabelledFiles)
{
    const QByteArray png = readFile(sampleFile("atelier-invoice-scan.png"));
    const char *const damaged = "Can't open image: the file is damaged or not an image";
    const struct {
        const char *name;
        std::optional<QByteArray> bytes; // none: the file is not there
        const char *expected;
    } cases[] = {
        // clang-format off
        {"corrupt.png", "not an image", damaged},
        {"corrupt.tiff", "II*", damaged},
        {"corrupt.heic", QByteArray("\0\0\0\x18" "ftypheic\0\0\0\0mif1heic", 24) + "broken", damaged},
        {"corrupt.jpg", "\xff\xd8\xff garbage", "Couldn't decode image"},
        {"truncated.png", png.left(png.size() / 2), "Couldn't decode image"},
        {"notes.txt", "hello", "Unsupported file type"},
        {"corrupt.pdf", "%PDF-1.4\nnot really\n", "Can't open PDF: the file is damaged or not a PDF"},
        {"no-pages.pdf", {}, "PDF has no pages"},
        {"flat.pdf", {}, "Couldn't render PDF pages"},
        {"deleted.png", {}, "Can't open image: No such file or directory"},
        {"missing.PDF", {}, "Can't open PDF: No such file or directory"},
        {"pipe.png", {}, "Can't open image: not a regular file"},
        // clang-format on
    };
    ASSERT_EQ(QProcess::execute("mkfifo", {path("pipe.png")}), 0);
    Fixtures::writeRawPdf(path("no-pages.pdf"), {});
    Fixtures::writeRawPdf(path("flat.pdf"), {{{0, 0, 612, 0}, {}, 0, {}}});
    for (const auto &c : cases) {
        if (c.bytes)
            writeFile(path(c.name), *c.bytes);
        EXPECT_EQ(message(path(c.name)), QString::fromLatin1(c.expected)) << c.name;
        EXPECT_TRUE(ocr.calls.isEmpty()) << c.name;
    }
    writeFile(path("png.jpg"), png);
    EXPECT_EQ(pages(path("png.jpg")).value(0)->image.size(), QSize(1700, 2200));
}

// Decoder warnings (Qt's image-I/O categories, libpng and libtiff text) stop at the filter; everything
// else reaches the handler installed before it.
TEST(DecoderWarnings, AreFilteredOut)
{
    static QStringList captured;
    const QtMessageHandler before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &message) { captured.append(message); });
    Pipeline::quietDecoderWarnings();
    const QLoggingCategory imageio("qt.gui.imageio"), tiff("qt.imageformats.tiff"), other("tabrix.test");
    qCWarning(imageio) << "libpng warning: iCCP: known incorrect sRGB profile";
    qCWarning(tiff) << "f.tiff: unknown field with tag 65000";
    qWarning("libpng warning: tEXt: CRC error");
    qCWarning(other) << "kept";
    qCritical("also kept");
    qInstallMessageHandler(before);
    EXPECT_EQ(captured, QStringList({"kept", "also kept"}));
}
