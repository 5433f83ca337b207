#include "platform/images/decoding/Heif.h"

#include "platform/images/decoding/HeifBoxes.h"
#include "platform/images/decoding/Upright.h"
#include "platform/images/decoding/TiffTags.h"
#include "platform/tasks/Cancellation.h"

#include <libheif/heif.h>

#include <algorithm>
#include <cstring>

namespace lumisort::images {
namespace {

template <class Object, auto release>
struct Release {
    void operator()(Object* object) const { release(object); }
};
template <class Object, auto release>
using Owned = std::unique_ptr<Object, Release<Object, release>>;

using Context = Owned<heif_context, heif_context_free>;
using Handle = Owned<heif_image_handle, heif_image_handle_release>;
using Options = Owned<heif_decoding_options, heif_decoding_options_free>;

void check(const heif_error& error) {
    if (error.code != heif_error_Ok) throw ImageError(damagedPicture);
}

/// What libheif reads a file through, piece by piece: also between the tiles of a picture. It asks for single
/// numbers, hundreds of them, so a stretch of the file is kept at hand.
struct Stream {
    const FileBytes* file;
    std::stop_token stop;
    std::int64_t position = 0;
    std::vector<std::uint8_t> window;
    std::uint64_t windowAt = 0;

    /// As ByteSource::read.
    std::size_t read(std::uint64_t at, std::span<std::uint8_t> into) {
        constexpr std::size_t windowBytes = 16 << 10;
        if (into.size() >= windowBytes) return file->read(at, into);
        if (at < windowAt || at + into.size() > windowAt + window.size()) {
            window.resize(windowBytes);
            window.resize(file->read(at, window));
            windowAt = at;
        }
        const auto count = std::min<std::size_t>(into.size(), windowAt + window.size() - at);
        std::copy_n(window.begin() + static_cast<std::ptrdiff_t>(at - windowAt), count, into.begin());
        return count;
    }
};

/// libheif aborts when a read fails, so the only place to refuse one is the question, before it, whether the
/// file is long enough. Missing bytes of a file that has shrunk since become zeros.
int readStream(void* into, std::size_t size, void* stream) {
    auto& source = *static_cast<Stream*>(stream);
    const std::span bytes(static_cast<std::uint8_t*>(into), size);
    std::ranges::fill(bytes.subspan(source.read(static_cast<std::uint64_t>(source.position), bytes)), 0);
    source.position += static_cast<std::int64_t>(size);
    return 0;
}

heif_reader_grow_status waitForSize(std::int64_t size, void* stream) {
    const auto& source = *static_cast<Stream*>(stream);
    return source.stop.stop_requested() || size < 0 || static_cast<std::uint64_t>(size) > source.file->size()
               ? heif_reader_grow_status_size_beyond_eof
               : heif_reader_grow_status_size_reached;
}

const heif_reader reader{
    .reader_api_version = 1,
    .get_position = [](void* stream) { return static_cast<Stream*>(stream)->position; },
    .read = readStream,
    .seek =
        [](std::int64_t position, void* stream) {
            static_cast<Stream*>(stream)->position = position;
            return 0;
        },
    .wait_for_file_size = waitForSize,
};

struct Primary {
    std::unique_ptr<Stream> stream; ///< outlives the context, which reads from it
    Context context;
    Handle handle;
    HeifPrimary boxes;
};

Primary openPrimary(const FileBytes& file, const std::stop_token& stop) {
    const auto boxes = readHeifPrimary(file);
    if (!boxes) throw ImageError("The file holds no still picture.");
    if (!boxes->hevc) throw ImageError("The picture is not coded in HEVC.");
    Primary primary{.stream = std::make_unique<Stream>(&file, stop),
                    .context = Context(heif_context_alloc()),
                    .handle = {},
                    .boxes = *boxes};
    heif_context_set_max_decoding_threads(primary.context.get(), 0);
    // Any size may be reported; what is decoded is limited before.
    heif_context_set_maximum_image_size_limit(primary.context.get(), maxDecodedSide);
    check(heif_context_read_from_reader(primary.context.get(), &reader, primary.stream.get(), nullptr));
    heif_image_handle* handle = nullptr;
    check(heif_context_get_primary_image_handle(primary.context.get(), &handle));
    primary.handle.reset(handle);
    return primary;
}

ExifFields readExif(const heif_image_handle* handle) {
    constexpr std::size_t mostBytes = 16 << 20;
    heif_item_id id = 0;
    if (heif_image_handle_get_list_of_metadata_block_IDs(handle, "Exif", &id, 1) != 1) return {};
    const std::size_t size = heif_image_handle_get_metadata_size(handle, id);
    if (size < 4 || size > mostBytes) return {};
    std::vector<std::uint8_t> block(size);
    if (heif_image_handle_get_metadata(handle, id, block.data()).code != heif_error_Ok) return {};
    // The block starts with the distance from behind this number to the TIFF head.
    const std::size_t skip = 4 + (std::size_t{block[0]} << 24 | std::size_t{block[1]} << 16 |
                                  std::size_t{block[2]} << 8 | block[3]);
    if (skip >= size) return {};
    return readExifFields(std::span<const std::uint8_t>(block).subspan(skip));
}

/// The embedded profile, or the one that the coded colour description stands for; an empty one means sRGB.
std::vector<std::uint8_t> readProfile(const heif_image_handle* handle) {
    std::vector<std::uint8_t> profile(heif_image_handle_get_raw_color_profile_size(handle));
    if (!profile.empty()) {
        check(heif_image_handle_get_raw_color_profile(handle, profile.data()));
        return profile;
    }
    heif_color_profile_nclx* coded = nullptr;
    if (heif_image_handle_get_nclx_color_profile(handle, &coded).code != heif_error_Ok) return profile;
    const Owned<heif_color_profile_nclx, heif_nclx_color_profile_free> nclx(coded);
    VipsBlob* blob = nullptr;
    if (nclx->color_primaries == heif_color_primaries_SMPTE_EG_432_1 &&
        vips_profile_load("p3", &blob, nullptr) == 0 && blob) {
        std::size_t size = 0;
        const auto* bytes = static_cast<const std::uint8_t*>(vips_blob_get(blob, &size));
        profile.assign(bytes, bytes + size);
        vips_area_unref(VIPS_AREA(blob));
    }
    return profile;
}

} // namespace

ImageProperties readHeifProperties(const FileBytes& file) {
    const Primary primary = openPrimary(file, {});
    ImageProperties properties{.type = ImageType::heif,
                               .width = heif_image_handle_get_width(primary.handle.get()),
                               .height = heif_image_handle_get_height(primary.handle.get())};
    if (properties.width < 1 || properties.height < 1) throw ImageError(damagedPicture);
    ExifFields fields = readExif(primary.handle.get());
    properties.orientation = primary.boxes.orientation.value_or(
        fields.orientation.value_or(Orientation::unchanged));
    properties.dateTimeOriginal = std::move(fields.dateTimeOriginal);
    // libheif's sizes are those after the container's own turning.
    if (swapsSides(primary.boxes.orientation.value_or(Orientation::unchanged))) std::swap(properties.width, properties.height);
    return properties;
}

Picture openHeif(const FileBytes& file, const WantedSize&, const std::stop_token& stop) {
    const Primary primary = openPrimary(file, stop);
    const heif_image_handle* handle = primary.handle.get();
    checkDecodable(heif_image_handle_get_width(handle), heif_image_handle_get_height(handle));
    const bool alpha = heif_image_handle_has_alpha_channel(handle) != 0;
    const Options options(heif_decoding_options_alloc());
    options->convert_hdr_to_8bit = 1;
    heif_image* decoded = nullptr;
    tasks::checkCancelled(stop);
    check(heif_decode_image(primary.handle.get(), &decoded, heif_colorspace_RGB,
                            alpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB,
                            options.get()));
    const std::shared_ptr<heif_image> owned(decoded, [](heif_image* image) { heif_image_release(image); });
    tasks::checkCancelled(stop);

    Picture picture{.storage = owned};
    const int width = heif_image_get_width(decoded, heif_channel_interleaved);
    const int height = heif_image_get_height(decoded, heif_channel_interleaved);
    int stride = 0;
    std::uint8_t* samples = heif_image_get_plane(decoded, heif_channel_interleaved, &stride);
    const int channels = alpha ? 4 : 3;
    if (!samples || width < 1 || height < 1) throw ImageError(damagedPicture);
    // libvips knows no padding between rows, so it goes.
    const std::size_t row = static_cast<std::size_t>(width) * static_cast<std::size_t>(channels);
    for (std::size_t y = 1; y < static_cast<std::size_t>(height); ++y)
        std::memmove(samples + y * row, samples + y * static_cast<std::size_t>(stride), row);
    picture.image = wrapSamples(samples, width, height, channels);
    picture.fullWidth = width;
    picture.fullHeight = height;
    if (alpha && heif_image_handle_is_premultiplied_alpha(handle)) picture.alpha = Alpha::premultiplied;
    if (!primary.boxes.orientation) picture.orientation = readExif(handle).orientation.value_or(Orientation::unchanged);
    if (const auto profile = readProfile(handle); !profile.empty())
        vips_image_set_blob_copy(picture.image.get(), VIPS_META_ICC_NAME, profile.data(), profile.size());
    return picture;
}

} // namespace lumisort::images
