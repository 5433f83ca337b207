#include "platform/images/decoding/JpegReader.h"

#include "platform/images/decoding/Vips.h"

#include <jerror.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>

namespace lumisort::images {
namespace {

/// Real headers stay far below, with profiles, previews and depth maps; a hostile one would fill the memory.
constexpr std::uint64_t mostHeaderBytes = 64 << 20;

/// Far more than libjpeg's fast entropy decoder wants to see ahead, and little enough to stay in the cache.
constexpr std::size_t windowBytes = 64 << 10;

/// libjpeg goes on with grey where data is damaged. A few such places leave a photo, many leave none, and
/// take their time.
constexpr long mostWarnings = 100;

constexpr int exifMarker = JPEG_APP0 + 1, profileMarker = JPEG_APP0 + 2;
constexpr unsigned wholeSegment = 0xffff;

JpegReader& owner(j_decompress_ptr info) {
    return *static_cast<JpegReader*>(info->client_data);
}

} // namespace

template <class Calls>
void JpegReader::guarded(Calls&& calls) {
    if (setjmp(jump_) != 0) {
        if (errors_.msg_code == JERR_OUT_OF_MEMORY) throw std::bad_alloc();
        throw ImageError(damagedPicture);
    }
    calls();
    if (errors_.num_warnings > mostWarnings) throw ImageError(damagedPicture);
}

JpegReader::JpegReader(const FileBytes& file, std::stop_token stop)
    : file_(file), stop_(std::move(stop)), end_(std::min(file.size(), mostHeaderBytes)),
      window_(windowBytes) {
    info_.err = jpeg_std_error(&errors_);
    info_.client_data = this;
    errors_.error_exit = [](j_common_ptr info) {
        std::longjmp(static_cast<JpegReader*>(info->client_data)->jump_, 1);
    };
    source_.init_source = [](j_decompress_ptr) {};
    source_.fill_input_buffer = [](j_decompress_ptr info) -> boolean {
        owner(info).fill();
        return TRUE;
    };
    source_.skip_input_data = [](j_decompress_ptr info, long count) { owner(info).skip(count); };
    source_.resync_to_restart = jpeg_resync_to_restart;
    source_.term_source = [](j_decompress_ptr) {};
    try {
        guarded([this] {
            jpeg_create_decompress(&info_);
            info_.src = &source_;
            jpeg_save_markers(&info_, exifMarker, wholeSegment);
            jpeg_save_markers(&info_, profileMarker, wholeSegment);
            jpeg_read_header(&info_, TRUE);
        });
    } catch (...) {
        jpeg_destroy_decompress(&info_);
        throw;
    }
    end_ = file.size();
}

JpegReader::~JpegReader() {
    jpeg_destroy_decompress(&info_);
}

std::span<const std::uint8_t> JpegReader::exif() const {
    constexpr std::string_view head{"Exif\0\0", 6};
    for (auto* marker = info_.marker_list; marker != nullptr; marker = marker->next)
        if (marker->marker == exifMarker && marker->data_length > head.size() &&
            std::memcmp(marker->data, head.data(), head.size()) == 0)
            return {marker->data, marker->data_length};
    return {};
}

std::vector<std::uint8_t> JpegReader::profile() {
    JOCTET* bytes = nullptr;
    unsigned size = 0;
    guarded([&] { jpeg_read_icc_profile(&info_, &bytes, &size); });
    std::vector<std::uint8_t> profile(bytes, bytes + size);
    std::free(bytes);
    return profile;
}

void JpegReader::start(int shrink) {
    info_.scale_num = 1;
    info_.scale_denom = static_cast<unsigned>(shrink);
    guarded([this] { jpeg_start_decompress(&info_); });
}

void JpegReader::readRow(std::uint8_t* row) {
    guarded([&] { jpeg_read_scanlines(&info_, &row, 1); });
}

/// A file that ends before its picture does is damaged, and a stop is the end of the file.
void JpegReader::fill() {
    const std::uint64_t left = end_ - std::min(end_, position_);
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(left, window_.size()));
    const std::size_t count =
        stop_.stop_requested() ? 0 : file_.read(position_, std::span(window_).first(wanted));
    if (count == 0) ERREXIT(&info_, JERR_INPUT_EOF);
    position_ += count;
    source_.next_input_byte = window_.data();
    source_.bytes_in_buffer = count;
}

void JpegReader::skip(long count) {
    if (count <= 0) return;
    const auto here = std::min(static_cast<std::size_t>(count), source_.bytes_in_buffer);
    source_.next_input_byte += here;
    source_.bytes_in_buffer -= here;
    position_ += static_cast<std::size_t>(count) - here;
}

} // namespace lumisort::images
