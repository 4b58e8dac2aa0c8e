// HEIC and HEIF (and AVIF, where libheif has a decoder) through libheif. Phones store a small
// thumbnail beside the photo; when one is at least the thumbnail's size it is decoded instead of
// the 12-megapixel grid. Otherwise the primary image is decoded whole, so its size is checked
// against the limits first.

#include "color/ThumbnailAccumulator.h"
#include "color/ThumbnailDecoders.h"

#include <libheif/heif.h>
#include <memory>
#include <mutex>
#include <vector>

namespace hueshelf::ThumbnailDecoders {

namespace {

// Handed to libheif as its own refusal of larger sides, beside the byte limit checked here.
constexpr int kMaxSide = 32768;

struct ContextFree {
    void operator()(heif_context* context) const { heif_context_free(context); }
};
struct HandleRelease {
    void operator()(heif_image_handle* handle) const { heif_image_handle_release(handle); }
};
struct ImageRelease {
    void operator()(heif_image* image) const { heif_image_release(image); }
};
struct OptionsFree {
    void operator()(heif_decoding_options* options) const { heif_decoding_options_free(options); }
};
using Handle = std::unique_ptr<heif_image_handle, HandleRelease>;

void initialiseOnce() {
    // Balanced by nothing: the decoders stay registered for the life of the process.
    static std::once_flag once;
    std::call_once(once, [] { heif_init(nullptr); });
}

// The smallest embedded thumbnail that is at least the thumbnail's size each way.
Handle bestThumbnail(const heif_image_handle* primary) {
    const int count = heif_image_handle_get_number_of_thumbnails(primary);
    if (count <= 0) {
        return {};
    }
    std::vector<heif_item_id> ids(static_cast<std::size_t>(count));
    const int listed = heif_image_handle_get_list_of_thumbnail_IDs(primary, ids.data(), count);
    Handle best;
    qint64 bestArea = 0;
    for (int i = 0; i < listed; ++i) {
        heif_image_handle* raw = nullptr;
        if (heif_image_handle_get_thumbnail(primary, ids[static_cast<std::size_t>(i)], &raw).code !=
            heif_error_Ok) {
            continue;
        }
        Handle thumbnail(raw);
        const int width = heif_image_handle_get_width(thumbnail.get());
        const int height = heif_image_handle_get_height(thumbnail.get());
        const qint64 area = qint64{width} * height;
        if (width >= ThumbnailAccumulator::side && height >= ThumbnailAccumulator::side &&
            (!best || area < bestArea)) {
            best = std::move(thumbnail);
            bestArea = area;
        }
    }
    return best;
}

} // namespace

bool looksLikeHeif(const QByteArray& head) {
    return head.size() >= 12 &&
           heif_check_filetype(reinterpret_cast<const uint8_t*>(head.constData()),
                               static_cast<int>(head.size())) == heif_filetype_yes_supported;
}

std::optional<QImage> decodeHeif(const QString& path, const ThumbnailLimits& limits) {
    initialiseOnce();
    const std::unique_ptr<heif_context, ContextFree> context(heif_context_alloc());
    if (!context) {
        return std::nullopt;
    }
    heif_context_set_maximum_image_size_limit(context.get(), kMaxSide);
    if (heif_context_read_from_file(context.get(), QFile::encodeName(path).constData(), nullptr)
            .code != heif_error_Ok) {
        return std::nullopt;
    }
    heif_image_handle* rawPrimary = nullptr;
    if (heif_context_get_primary_image_handle(context.get(), &rawPrimary).code != heif_error_Ok) {
        return std::nullopt;
    }
    const Handle primary(rawPrimary);
    Handle thumbnail = bestThumbnail(primary.get());
    const heif_image_handle* handle = thumbnail ? thumbnail.get() : primary.get();

    const int width = heif_image_handle_get_width(handle);
    const int height = heif_image_handle_get_height(handle);
    if (width < 1 || height < 1 || qint64{width} * height * 4 > limits.maxDecodedBytes) {
        return std::nullopt;
    }

    const std::unique_ptr<heif_decoding_options, OptionsFree> options(
        heif_decoding_options_alloc());
    if (!options) {
        return std::nullopt;
    }
    if (options->version >= 2) {
        options->convert_hdr_to_8bit = 1;
    }
    if (options->version >= 3) {
        // A truncated or damaged stream is an error, not a picture with a grey part.
        options->strict_decoding = 1;
    }
    heif_image* rawImage = nullptr;
    if (heif_decode_image(handle, &rawImage, heif_colorspace_RGB, heif_chroma_interleaved_RGBA,
                          options.get())
            .code != heif_error_Ok) {
        return std::nullopt;
    }
    const std::unique_ptr<heif_image, ImageRelease> image(rawImage);
    int stride = 0;
    const uint8_t* pixels =
        heif_image_get_plane_readonly(image.get(), heif_channel_interleaved, &stride);
    const int decodedWidth = heif_image_get_width(image.get(), heif_channel_interleaved);
    const int decodedHeight = heif_image_get_height(image.get(), heif_channel_interleaved);
    if (!pixels || decodedWidth < 1 || decodedHeight < 1 || stride < decodedWidth * 4) {
        return std::nullopt;
    }
    const auto alpha = heif_image_is_premultiplied_alpha(image.get())
                           ? ThumbnailAccumulator::Alpha::premultiplied
                           : ThumbnailAccumulator::Alpha::straight;
    ThumbnailAccumulator accumulator(decodedWidth, decodedHeight);
    for (int y = 0; y < decodedHeight; ++y) {
        accumulator.addRow(y, pixels + static_cast<qsizetype>(y) * stride, decodedWidth, alpha);
    }
    return accumulator.image();
}

} // namespace hueshelf::ThumbnailDecoders
