#include "ImageLoader.h"

#include "Engines.h"
#include "FileChecks.h"
#include "NativeNames.h"
#include "PageCut.h"
#include "PageRecognition.h"

#include <QFile>
#include <QImageReader>
#include <cmath>
#include <functional>
#include <memory>
#include <optional>

namespace Pipeline {

namespace {

constexpr int maxFrames = 30;
constexpr int maxSide = 3000; // pixels on the longer side of a decoded frame

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

QImage limitedImage(QImage image)
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

std::optional<Frames> openWithQt(const QString &path)
{
    auto reader = std::make_shared<QImageReader>(path);
    // Judged by content, so a PNG saved as .jpg still opens; orientation tags are applied on reading.
    reader->setDecideFormatFromContent(true);
    reader->setAutoTransform(true);
    // Large scans exceed Qt's default 256 MB decoding limit before they are scaled down.
    reader->setAllocationLimit(1024);
    if (!reader->canRead())
        return std::nullopt;
    const int count = reader->imageCount();
    return Frames{count, [reader, count](int i) {
                      // By index: jumpToNextImage() skips frames of multi-page TIFFs in Qt 6.4.
                      if (count > 1 && !reader->jumpToImage(i))
                          return QImage();
                      // The scaled size is given in the file's stored orientation, before the tag turns it.
                      const QSize stored = reader->size();
                      reader->setScaledSize(stored.isValid() ? limited(stored) : QSize());
                      return limitedImage(reader->read());
                  }};
}

bool isHeif(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && Engines::looksLikeHeif(file.read(64));
}

std::optional<Frames> openHeif(const QString &path)
{
    const Engines::OpenHeif open = Engines::module().openHeif;
    std::shared_ptr<Engines::ImageSource> source(open ? open(QFile::encodeName(path).constData()) : nullptr);
    if (!source)
        return std::nullopt;
    return Frames{source->frameCount(), [source](int i) { return source->frame(i, maxSide); }};
}

} // namespace

Expected<QList<PagePtr>> loadImage(const QString &path, const LoadOptions &options, const Report &report)
{
    if (auto unreadable = checkRegularFile(path, "Can't open image"))
        return *unreadable;
    const std::optional<Frames> frames = isHeif(path) ? openHeif(path) : openWithQt(path);
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
