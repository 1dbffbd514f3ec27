#include "Fixtures.h"
#include "intake/Engines.h"
#include "intake/Pipeline.h"

#include <QBuffer>
#include <QFile>
#include <QPainter>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using Fixtures::FakeOcr;

namespace {

class ImageLoader : public ::testing::Test {
protected:
    QString path(const QString &name) const { return dir.filePath(name); }

    Expected<QList<PagePtr>> load(const QString &file)
    {
        progress.clear();
        Pipeline::LoadOptions options;
        options.ocr = &ocr;
        return Pipeline::load(file, options, [this](DocStatus::Kind s, double p) {
            progress.append({s, p});
        });
    }

    static QList<PagePtr> pages(const Expected<QList<PagePtr>> &result)
    {
        if (const auto *error = std::get_if<TabrixError>(&result))
            ADD_FAILURE() << error->message.toStdString();
        return result.index() == 0 ? std::get<0>(result) : QList<PagePtr>{};
    }

    static QString message(const Expected<QList<PagePtr>> &result)
    {
        return result.index() == 1 ? std::get<1>(result).message : QStringLiteral("(loaded)");
    }

    void write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        file.open(QIODevice::WriteOnly);
        file.write(bytes);
    }

    QTemporaryDir dir;
    FakeOcr ocr;
    QList<std::pair<DocStatus::Kind, double>> progress;
};

// White with a black square in the top-left corner, to see where the top-left ends up.
QImage markedImage(int w, int h)
{
    QImage image(w, h, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter(&image).fillRect(0, 0, w / 4, h / 4, Qt::black);
    return image;
}

bool darkAt(const QImage &image, double fx, double fy)
{
    return qGray(image.pixel(int(fx * (image.width() - 1)), int(fy * (image.height() - 1)))) < 128;
}

} // namespace

// A 45-page TIFF gives its first 30 frames, each decoded from its own page, numbered 0…29, with
// progress 0.05 + 0.85 × i / 30 while recognising.
TEST_F(ImageLoader, MultiPageTiffReadsThirtyFramesInOrder)
{
    QList<QImage> frames;
    for (int i = 0; i < 45; ++i) {
        QImage frame(40 + i, 30, QImage::Format_Grayscale8);
        frame.fill(i * 5);
        frames.append(frame);
    }
    Fixtures::writeGreyTiff(path("scan.tiff"), frames);
    const QList<PagePtr> loaded = pages(load(path("scan.tiff")));
    ASSERT_EQ(loaded.size(), 30);
    ASSERT_EQ(ocr.calls.size(), 30);
    ASSERT_EQ(progress.size(), 30);
    for (int i = 0; i < 30; ++i) {
        EXPECT_EQ(ocr.calls[i].page, i);
        EXPECT_EQ(ocr.calls[i].meanGrey, i * 5) << "frame " << i;
        EXPECT_EQ(loaded[i]->image.size(), QSize(40 + i, 30));
        EXPECT_EQ(loaded[i]->lines.value(0).page, i);
        EXPECT_EQ(progress[i].first, DocStatus::Recognizing);
        EXPECT_DOUBLE_EQ(progress[i].second, 0.05 + 0.85 * i / 30);
    }
}

// An orientation tag turns the photo upright, and the 3000 px limit applies to the upright image.
TEST_F(ImageLoader, JpegOrientationAppliedAndSizeLimited)
{
    const struct {
        int orientation;
        QSize stored;
        QSize upright;
        QPointF mark; // where the stored top-left corner appears, as fractions of the upright image
    } cases[] = {
        {1, {400, 300}, {400, 300}, {0.05, 0.05}},     {6, {400, 300}, {300, 400}, {0.95, 0.05}},
        {8, {400, 300}, {300, 400}, {0.05, 0.95}},     {3, {400, 300}, {400, 300}, {0.95, 0.95}},
        {6, {4000, 3000}, {2250, 3000}, {0.95, 0.05}}, {1, {3200, 1000}, {3000, 938}, {0.05, 0.05}},
    };
    for (const auto &c : cases) {
        Fixtures::writeJpegWithOrientation(path("photo.jpg"),
                                           markedImage(c.stored.width(), c.stored.height()), c.orientation);
        const QList<PagePtr> loaded = pages(load(path("photo.jpg")));
        ASSERT_EQ(loaded.size(), 1);
        const QImage &image = loaded[0]->image;
        EXPECT_EQ(image.size(), c.upright) << c.orientation;
        EXPECT_TRUE(darkAt(image, c.mark.x(), c.mark.y())) << c.orientation;
        EXPECT_FALSE(darkAt(image, 1 - c.mark.x(), 1 - c.mark.y())) << c.orientation;
    }
}

// Large PNGs shrink to 3000 px on the longer side; smaller ones keep their size; grey pages are kept
// as 8-bit grey, coloured ones in colour.
TEST_F(ImageLoader, LimitsSizeAndKeepsGreyCompact)
{
    QImage big = markedImage(4500, 1500);
    big.save(path("big.png"));
    QImage small = markedImage(640, 480);
    QPainter(&small).fillRect(500, 400, 20, 20, Qt::red);
    small.save(path("small.png"));
    const QList<PagePtr> bigPages = pages(load(path("big.png")));
    const QList<PagePtr> smallPages = pages(load(path("small.png")));
    ASSERT_EQ(bigPages.size(), 1);
    ASSERT_EQ(smallPages.size(), 1);
    EXPECT_EQ(bigPages[0]->image.size(), QSize(3000, 1000));
    EXPECT_EQ(bigPages[0]->image.format(), QImage::Format_Grayscale8);
    EXPECT_EQ(smallPages[0]->image.size(), QSize(640, 480));
    EXPECT_NE(smallPages[0]->image.format(), QImage::Format_Grayscale8);
}

// A HEIC photo decodes through libheif like any other image (skipped where no encoder is installed).
TEST_F(ImageLoader, ReadsHeic)
{
    if (QStandardPaths::findExecutable(QStringLiteral("heif-enc")).isEmpty())
        GTEST_SKIP() << "heif-enc (libheif-examples) not installed";
    markedImage(640, 480).save(path("source.png"));
    ASSERT_TRUE(Fixtures::run("heif-enc", {"-q", "90", "-o", path("photo.heic"), path("source.png")}));
    const QList<PagePtr> loaded = pages(load(path("photo.heic")));
    ASSERT_EQ(loaded.size(), 1);
    EXPECT_EQ(loaded[0]->image.size(), QSize(640, 480));
    EXPECT_TRUE(darkAt(loaded[0]->image, 0.05, 0.05));
    EXPECT_EQ(ocr.calls.size(), 1);
}

// Unreadable, vanished and undecodable files fail with the user's messages; wrong names are refused.
// A file that starts like an image but breaks off has frames that cannot be decoded.
TEST_F(ImageLoader, Failures)
{
    QByteArray png;
    {
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        markedImage(200, 200).save(&buffer, "PNG");
    }
    write("corrupt.png", "not an image at all");
    write("corrupt.jpg", "\xff\xd8\xff garbage");
    write("corrupt.tiff", "II*\0garbage");
    write("corrupt.heic", QByteArray("\0\0\0\x18"
                                     "ftypheic\0\0\0\0mif1heic",
                                     24) +
                              "broken");
    write("truncated.png", png.left(png.size() / 2));
    write("deleted.png", png);
    QFile::remove(path("deleted.png"));
    write("notes.txt", "hello");
    const struct {
        const char *file;
        const char *message;
    } cases[] = {{"corrupt.png", "Can't open image"},    {"corrupt.jpg", "Couldn't decode image"},
                 {"corrupt.tiff", "Can't open image"},   {"corrupt.heic", "Can't open image"},
                 {"deleted.png", "Can't open image"},    {"truncated.png", "Couldn't decode image"},
                 {"notes.txt", "Unsupported file type"}, {"missing.PDF", "Can't open PDF"}};
    for (const auto &c : cases)
        EXPECT_EQ(message(load(path(c.file))), QString::fromLatin1(c.message)) << c.file;
    EXPECT_TRUE(ocr.calls.isEmpty());
}

// A mislabelled file is read by its content.
TEST_F(ImageLoader, ContentDecidesFormat)
{
    markedImage(300, 200).save(path("really-a-png.jpg"), "PNG");
    const QList<PagePtr> loaded = pages(load(path("really-a-png.jpg")));
    ASSERT_EQ(loaded.size(), 1);
    EXPECT_EQ(loaded[0]->image.size(), QSize(300, 200));
}

// HEIF files are recognised by the brands of their "ftyp" box, major or compatible, and nothing else.
TEST(HeifSniffing, BrandsMajorOrCompatible)
{
    const struct {
        QByteArray head;
        bool heif;
    } cases[] = {
        {QByteArray("\0\0\0\x18"
                    "ftypheic\0\0\0\0mif1heic",
                    24),
         true},
        {QByteArray("\0\0\0\x1c"
                    "ftypMiHE\0\0\0\0MiHEmif1heic",
                    28),
         true},
        {QByteArray("\0\0\0\x18"
                    "ftypisom\0\0\0\0isommp41",
                    24),
         false},
        {QByteArray("\0\0\0\x14"
                    "ftypisom\0\0\0\0mp41heic",
                    24),
         false}, // "heic" lies past the box
        {QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16), false},
        {QByteArray("\0\0\0\x18"
                    "ftyp",
                    8),
         false},
    };
    for (const auto &c : cases)
        EXPECT_EQ(Engines::looksLikeHeif(c.head), c.heif) << c.head.toHex().constData();
}
