// HEIC/HEIF decoding with libheif behind Engines::ImageSource; part of the tabrix_engines module.
#include "intake/Engines.h"
#include "model/CHandle.h"

#include <cmath>
#include <libheif/heif.h>
#include <mutex>
#include <vector>

namespace {

using HeifContext = CHandle<heif_context, heif_context_free>;
using HeifHandle = CHandle<heif_image_handle, heif_image_handle_release>;
using HeifImage = CHandle<heif_image, heif_image_release>;

class HeifSource final : public Engines::ImageSource {
public:
    HeifSource(QByteArray bytes, HeifContext context, std::vector<heif_item_id> ids)
        : m_bytes(std::move(bytes)), m_context(std::move(context)), m_ids(std::move(ids))
    {
    }

    int frameCount() const override { return int(m_ids.size()); }

    QImage frame(int index, int maxSide) override
    {
        heif_image_handle *rawHandle = nullptr;
        if (index < 0 || index >= frameCount() ||
            heif_context_get_image_handle(m_context.get(), m_ids[size_t(index)], &rawHandle).code !=
                heif_error_Ok)
            return {};
        const HeifHandle handle(rawHandle);
        heif_image *rawImage = nullptr;
        // libheif applies the file's rotation and mirroring while decoding.
        if (heif_decode_image(handle.get(), &rawImage, heif_colorspace_RGB, heif_chroma_interleaved_RGB,
                              nullptr)
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
        // Copied or scaled out of libheif's buffer before it is released.
        const int longer = std::max(w, h);
        if (longer <= maxSide)
            return view.copy();
        const double f = double(maxSide) / longer;
        const QSize size(std::max(1, int(std::lround(w * f))), std::max(1, int(std::lround(h * f))));
        return view.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }

private:
    QByteArray m_bytes; // read by the context in place, so declared (and released) around it
    HeifContext m_context;
    std::vector<heif_item_id> m_ids;
};

} // namespace

extern "C" Q_DECL_EXPORT Engines::ImageSource *tabrix_open_heif(const QByteArray &bytes)
{
    static std::once_flag once;
    std::call_once(once, [] { heif_init(nullptr); });
    HeifContext context(heif_context_alloc());
    if (!context || heif_context_read_from_memory_without_copy(context.get(), bytes.constData(),
                                                               size_t(bytes.size()), nullptr)
                            .code != heif_error_Ok)
        return nullptr;
    const int count = heif_context_get_number_of_top_level_images(context.get());
    std::vector<heif_item_id> ids(size_t(std::max(count, 0)));
    if (count > 0)
        heif_context_get_list_of_top_level_image_IDs(context.get(), ids.data(), count);
    return new HeifSource(bytes, std::move(context), std::move(ids));
}
