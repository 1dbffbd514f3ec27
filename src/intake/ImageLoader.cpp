#include "Ocr.h"
#include "PageImage.h"
#include "Pipeline.h"
#include "SupportedFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <cmath>
#include <libheif/heif.h>
#include <mutex>
#include <vector>

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
                      // jumpToNextImage() skips frames of multi-page TIFFs in Qt 6.4; jumping by index does
                      // not.
                      if (count > 1 && !reader->jumpToImage(i))
                          return QImage();
                      // The scaled size is given in the file's stored orientation, before the tag turns it.
                      const QSize stored = reader->size();
                      reader->setScaledSize(stored.isValid() ? limited(stored) : QSize());
                      return limitedImage(reader->read());
                  }};
}

struct HeifContextFree {
    void operator()(heif_context *c) const { heif_context_free(c); }
};
struct HeifHandleRelease {
    void operator()(heif_image_handle *h) const { heif_image_handle_release(h); }
};
struct HeifImageRelease {
    void operator()(heif_image *i) const { heif_image_release(i); }
};
using HeifContext = std::unique_ptr<heif_context, HeifContextFree>;
using HeifHandle = std::unique_ptr<heif_image_handle, HeifHandleRelease>;
using HeifImage = std::unique_ptr<heif_image, HeifImageRelease>;

bool isHeif(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.read(12);
    return heif_check_filetype(reinterpret_cast<const uint8_t *>(head.constData()), int(head.size())) ==
           heif_filetype_yes_supported;
}

QImage decodeHeif(heif_context *context, heif_item_id id)
{
    heif_image_handle *rawHandle = nullptr;
    if (heif_context_get_image_handle(context, id, &rawHandle).code != heif_error_Ok)
        return {};
    const HeifHandle handle(rawHandle);
    heif_image *rawImage = nullptr;
    // libheif applies the file's rotation and mirroring while decoding.
    if (heif_decode_image(handle.get(), &rawImage, heif_colorspace_RGB, heif_chroma_interleaved_RGB, nullptr)
            .code != heif_error_Ok)
        return {};
    const HeifImage image(rawImage);
    int stride = 0;
    const uint8_t *data = heif_image_get_plane_readonly(image.get(), heif_channel_interleaved, &stride);
    const int w = heif_image_get_width(image.get(), heif_channel_interleaved);
    const int h = heif_image_get_height(image.get(), heif_channel_interleaved);
    if (!data || w < 1 || h < 1)
        return {};
    const QImage view(data, w, h, stride, QImage::Format_RGB888);
    const QSize size = limited(view.size());
    // Copy or scale out of libheif's buffer before it is released.
    return size == view.size() ? view.copy()
                               : view.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

std::optional<Frames> openHeif(const QString &path)
{
    static std::once_flag once;
    std::call_once(once, [] { heif_init(nullptr); });
    auto context = std::shared_ptr<heif_context>(heif_context_alloc(), HeifContextFree());
    if (!context ||
        heif_context_read_from_file(context.get(), QFile::encodeName(path).constData(), nullptr).code !=
            heif_error_Ok)
        return std::nullopt;
    const int count = heif_context_get_number_of_top_level_images(context.get());
    std::vector<heif_item_id> ids(size_t(std::max(count, 0)));
    heif_context_get_list_of_top_level_image_IDs(context.get(), ids.data(), count);
    return Frames{count, [context, ids](int i) { return decodeHeif(context.get(), ids[size_t(i)]); }};
}

} // namespace

Expected<QList<PagePtr>> loadImage(const QString &path, const LoadOptions &options, const Report &report)
{
    const std::optional<Frames> frames = isHeif(path) ? openHeif(path) : openWithQt(path);
    if (!frames)
        return error("Can't open image");
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
        const PageImage::Grey grey = PageImage::toGrey(image);
        Ocr::Engine &engine = options.ocr ? *options.ocr : Ocr::threadEngine();
        auto lines = engine.recognize(grey.image, page);
        if (auto *failed = std::get_if<TabrixError>(&lines))
            return *failed;
        auto data = std::make_shared<PageData>();
        data->lines = std::get<QList<TextLine>>(std::move(lines));
        if (options.renderImages)
            data->image = PageImage::compact(image, grey);
        pages.append(std::move(data));
    }
    if (pages.isEmpty())
        return error("Couldn't decode image");
    return pages;
}

Expected<QList<PagePtr>> load(const QString &path, const LoadOptions &options, const Report &report)
{
    const QString ext = QFileInfo(path).suffix().toLower();
    if (ext == QLatin1String("pdf"))
        return loadPDF(path, options, report);
    if (imageExts().contains(ext))
        return loadImage(path, options, report);
    return TabrixError{QStringLiteral("Unsupported file type")};
}

} // namespace Pipeline
