#include "ImageLoader.h"

#include "Engines.h"
#include "PageCut.h"
#include "PageRecognition.h"

#include <QBuffer>
#include <QImageReader>
#include <cmath>
#include <functional>
#include <memory>
#include <optional>
#include <png.h>

namespace Pipeline {

namespace {

constexpr int maxFrames = 30;
constexpr int maxSide = 3000;           // pixels on the longer side of a decoded frame
constexpr int allocationLimitMB = 1024; // the most a decoded frame may take before it is scaled down

TabrixError error(const char *message)
{
    return TabrixError{QString::fromLatin1(message)};
}

/// `size` shrunk so that its longer side is at most maxSide; smaller sizes are kept.
QSize limited(QSize size)
{
    const int longer = std::max(size.width(), size.height());
    if (longer <= maxSide)
        return size;
    const double f = double(maxSide) / longer;
    return QSize(std::max(1, int(std::lround(size.width() * f))),
                 std::max(1, int(std::lround(size.height() * f))));
}

QImage limitedImage(const QImage &image)
{
    const QSize size = limited(image.size());
    return size == image.size() ? image : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

/// The frames of one image file: how many, and each one decoded upright and at most maxSide pixels long
/// (a null image when a frame cannot be decoded).
struct Frames {
    int count = 0;
    std::function<QImage(int)> decode;
};

std::optional<Frames> openWithQt(const QByteArray &bytes)
{
    // The reader reads from the buffer, so both live as long as the frames are wanted.
    struct Source {
        QBuffer buffer;
        QImageReader reader;
    };
    auto source = std::make_shared<Source>();
    source->buffer.setData(bytes);
    source->buffer.open(QIODevice::ReadOnly);
    QImageReader *reader = &source->reader;
    reader->setDevice(&source->buffer);
    // Judged by content, so a PNG saved as .jpg still opens; orientation tags are applied on reading.
    reader->setDecideFormatFromContent(true);
    reader->setAutoTransform(true);
    // Large scans exceed Qt's default 256 MB decoding limit before they are scaled down.
    reader->setAllocationLimit(allocationLimitMB);
    if (!reader->canRead())
        return std::nullopt;
    const int count = reader->imageCount();
    return Frames{count, [source, reader, count](int i) {
                      // By index: jumpToNextImage() skips frames of multi-page TIFFs in Qt 6.4.
                      if (count > 1 && !reader->jumpToImage(i))
                          return QImage();
                      // The scaled size is given in the file's stored orientation, before the tag turns it.
                      const QSize stored = reader->size();
                      reader->setScaledSize(stored.isValid() ? limited(stored) : QSize());
                      return limitedImage(reader->read());
                  }};
}

/// A PNG decoded by libpng's own simplified reader, which keeps its errors to itself (Qt's PNG plugin
/// lets libpng print "libpng error: …" on standard error); nothing when its header is damaged.
std::optional<Frames> openPng(const QByteArray &bytes)
{
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_memory(&png, bytes.constData(), size_t(bytes.size())))
        return std::nullopt;
    // Grey stays grey; grey with alpha has no QImage format of its own and is read as RGBA.
    const bool alpha = png.format & PNG_FORMAT_FLAG_ALPHA;
    const bool grey = !(png.format & PNG_FORMAT_FLAG_COLOR) && !alpha;
    png.format = grey ? PNG_FORMAT_GRAY : (alpha ? PNG_FORMAT_RGBA : PNG_FORMAT_RGB);
    if (qint64(PNG_IMAGE_SIZE(png)) > qint64(allocationLimitMB) * 1024 * 1024) {
        png_image_free(&png);
        return std::nullopt;
    }
    const QImage::Format format = png.format == PNG_FORMAT_GRAY  ? QImage::Format_Grayscale8
                                  : png.format == PNG_FORMAT_RGB ? QImage::Format_RGB888
                                                                 : QImage::Format_RGBA8888;
    QImage image(int(png.width), int(png.height), format);
    if (image.isNull()) {
        png_image_free(&png);
        return std::nullopt;
    }
    // A failed read has freed the reader's state; the frame then cannot be decoded, as with Qt.
    if (!png_image_finish_read(&png, nullptr, image.bits(), int(image.bytesPerLine()), nullptr))
        image = QImage();
    return Frames{1, [image = limitedImage(image)](int) { return image; }};
}

std::optional<Frames> openHeif(const QByteArray &bytes)
{
    const Engines::OpenHeif open = Engines::module().openHeif;
    std::shared_ptr<Engines::ImageSource> source(open ? open(bytes) : nullptr);
    if (!source)
        return std::nullopt;
    return Frames{source->frameCount(), [source](int i) { return source->frame(i, maxSide); }};
}

std::optional<Frames> openFrames(const QByteArray &bytes)
{
    if (Engines::looksLikeHeif(bytes.left(64)))
        return openHeif(bytes);
    if (bytes.startsWith("\x89PNG\r\n\x1a\n"))
        return openPng(bytes);
    return openWithQt(bytes);
}

} // namespace

Expected<QList<PagePtr>> loadImage(const QByteArray &bytes, const LoadOptions &options, const Report &report)
{
    const std::optional<Frames> frames = openFrames(bytes);
    if (!frames)
        return TabrixError{QStringLiteral("Can't open image: the file is damaged or not an image")};
    if (frames->count < 1)
        return error("Image has no frames");
    const int n = std::min(frames->count, maxFrames);

    QList<PagePtr> pages;
    for (int i = 0; i < n; ++i) {
        if (report)
            report(DocStatus::Recognizing, 0.05 + 0.85 * i / n);
        const QImage image = frames->decode(i);
        if (image.isNull())
            continue;
        // Page numbers count the pages kept, so they stay consecutive when a frame could not be decoded.
        const int page = int(pages.size());
        auto read = recognizePage(image, page, options);
        if (auto *failed = std::get_if<TabrixError>(&read))
            return *failed;
        RecognizedPage &recognized = std::get<RecognizedPage>(read);
        auto data = std::make_shared<PageData>();
        data->lines = std::move(recognized.lines);
        if (options.renderImages)
            data->image = std::move(recognized.image);
        pages.append(std::move(data));
    }
    if (pages.isEmpty())
        return error("Couldn't decode image");
    return noteCut(std::move(pages), n, frames->count);
}

} // namespace Pipeline
