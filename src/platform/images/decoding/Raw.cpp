#include "platform/images/decoding/Raw.h"

#include "platform/images/decoding/DecoderSetup.h"
#include "platform/tasks/Cancellation.h"

#include <libraw/libraw.h>
#include <omp.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace lumisort::images {
namespace {

constexpr const char* damagedRaw = "The camera raw data is damaged or of an unknown kind.";

/// LibRaw's flip is one bit each for exchanging rows and columns (4), mirroring top-bottom (2) and left-right
/// (1).
constexpr std::array orientationOfFlip{1, 2, 4, 3, 5, 8, 6, 7};

/// Keeps DateTimeOriginal while LibRaw walks over the EXIF fields of whatever container it reads.
void keepDate(void* into, int tag, int type, int count, unsigned, void* stream, INT64) {
    constexpr int dateTimeOriginalTag = 0x9003, ascii = 2;
    auto& date = *static_cast<std::string*>(into);
    if (tag != dateTimeOriginalTag || type != ascii || count < 1 || !date.empty()) return;
    std::array<char, 64> text{};
    const auto length = std::min(static_cast<std::size_t>(count), text.size() - 1);
    static_cast<LibRaw_abstract_datastream*>(stream)->read(text.data(), 1, length);
    date = text.data();
}

class RawFile {
public:
    explicit RawFile(const FileBytes& file)
        : raw_(std::make_unique<LibRaw>(decoding::isVerbose() ? LIBRAW_OPTIONS_NONE
                                                              : LIBRAW_OPIONS_NO_MEMERR_CALLBACK |
                                                                    LIBRAW_OPIONS_NO_DATAERR_CALLBACK)) {
        omp_set_num_threads(1); // counts for the calling thread alone
        raw_->set_exifparser_handler(keepDate, &date_);
        check(raw_->open_file(file.path().c_str()));
        const int flip = raw_->imgdata.sizes.flip;
        orientation_ = flip >= 0 && flip < 8 ? orientationOfFlip[static_cast<std::size_t>(flip)] : 1;
        raw_->imgdata.params.user_flip = 0; // Turning is done once and for all formats elsewhere.
        raw_->set_exifparser_handler(nullptr, nullptr);
    }

    LibRaw& operator*() const { return *raw_; }
    LibRaw* operator->() const { return raw_.get(); }
    int orientation() const { return orientation_; }
    const std::string& date() const { return date_; }

    static void check(int error) {
        if (error != LIBRAW_SUCCESS) throw ImageError(damagedRaw);
    }

private:
    std::string date_;
    std::unique_ptr<LibRaw> raw_;
    int orientation_ = 1;
};

bool allAlike(const void* samples, std::size_t bytes, std::size_t sampleBytes) {
    const auto* start = static_cast<const std::uint8_t*>(samples);
    return bytes <= sampleBytes || std::memcmp(start, start + sampleBytes, bytes - sampleBytes) == 0;
}

/// LibRaw reports success for some files of which it could not read one sample. A real sensor has noise even
/// behind a lens cap.
bool holdsPicture(const LibRaw& raw) {
    const auto& data = raw.imgdata.rawdata;
    const std::size_t samples = std::size_t{data.sizes.raw_width} * data.sizes.raw_height;
    if (data.raw_image) return !allAlike(data.raw_image, samples * 2, 2);
    if (data.color3_image) return !allAlike(data.color3_image, samples * 6, 6);
    if (data.color4_image) return !allAlike(data.color4_image, samples * 8, 8);
    if (data.float_image) return !allAlike(data.float_image, samples * 4, 4);
    if (data.float3_image) return !allAlike(data.float3_image, samples * 12, 12);
    return data.float4_image && !allAlike(data.float4_image, samples * 16, 16);
}

} // namespace

ImageProperties readRawProperties(const FileBytes& file) {
    RawFile raw(file);
    RawFile::check(raw->adjust_sizes_info_only());
    return {.type = ImageType::raw,
            .width = raw->imgdata.sizes.iwidth,
            .height = raw->imgdata.sizes.iheight,
            .orientation = raw.orientation(),
            .dateTimeOriginal = raw.date()};
}

Picture openRaw(const FileBytes& file, const WantedSize& wanted, const std::stop_token& stop) {
    RawFile raw(file);
    const auto& sizes = raw->imgdata.sizes;
    checkDecodable(std::max(sizes.raw_width, sizes.width), std::max(sizes.raw_height, sizes.height));
    const int longest = std::max(sizes.width, sizes.height);

    auto& params = raw->imgdata.params;
    params.half_size = longest / 2 >= wanted.maxSide ? 1 : 0;
    params.use_camera_wb = 1;
    params.output_color = 1; // sRGB, with its own transfer curve
    params.gamm[0] = 1 / 2.4;
    params.gamm[1] = 12.92;
    params.output_bps = 8;

    LibRaw& library = *raw;
    const std::stop_callback cancel(stop, [&library] { library.setCancelFlag(); });
    library.set_progress_handler(
        [](void* token, LibRaw_progress, int, int) {
            return static_cast<const std::stop_token*>(token)->stop_requested() ? 1 : 0;
        },
        const_cast<std::stop_token*>(&stop));
    const auto step = [&stop](int error) {
        tasks::checkCancelled(stop);
        RawFile::check(error);
    };
    step(library.unpack());
    if (!holdsPicture(library)) throw ImageError("The camera raw data holds no picture.");
    step(library.dcraw_process());
    int error = LIBRAW_SUCCESS;
    const std::shared_ptr<libraw_processed_image_t> developed(
        library.dcraw_make_mem_image(&error),
        [](libraw_processed_image_t* image) { LibRaw::dcraw_clear_mem(image); });
    step(error);
    if (!developed || developed->type != LIBRAW_IMAGE_BITMAP || developed->bits != 8)
        throw ImageError(damagedRaw);

    Picture picture{.storage = developed,
                    .image =
                        wrapSamples(developed->data, developed->width, developed->height, developed->colors)};
    const int factor = params.half_size && library.imgdata.idata.filters ? 2 : 1;
    picture.fullWidth = developed->width * factor;
    picture.fullHeight = developed->height * factor;
    picture.orientation = raw.orientation();
    return picture;
}

bool isRaw(FileSignature signature, const FileBytes& file) {
    if (signature != FileSignature::none) return signature == FileSignature::raw;
    try {
        const RawFile raw(file);
        // Bare dumps are uncompressed, with a byte per sample at least.
        return std::uint64_t{raw->imgdata.sizes.raw_width} * raw->imgdata.sizes.raw_height <= file.size();
    } catch (const ImageError&) {
        return false;
    }
}

} // namespace lumisort::images
