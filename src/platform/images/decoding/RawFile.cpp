#include "platform/images/decoding/RawFile.h"

#include "platform/images/RawDevelopment.h"
#include "platform/images/decoding/DecoderSetup.h"
#include "platform/tasks/Cancellation.h"

#include <omp.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace lumisort::images {
namespace {

/// By LibRaw's flip.
constexpr std::array orientationOfFlip{Orientation::unchanged,          Orientation::mirrorLeftRight,
                                       Orientation::mirrorTopBottom,    Orientation::halfTurn,
                                       Orientation::mirrorMainDiagonal, Orientation::quarterTurnCounterClockwise,
                                       Orientation::quarterTurnClockwise, Orientation::mirrorAntiDiagonal};

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

int stopIfRequested(void* token, LibRaw_progress, int, int) {
    return static_cast<const std::stop_token*>(token)->stop_requested() ? 1 : 0;
}

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

RawFile::RawFile(const FileBytes& file)
    : raw_(std::make_unique<LibRaw>(decoding::isVerbose() ? LIBRAW_OPTIONS_NONE
                                                          : LIBRAW_OPIONS_NO_MEMERR_CALLBACK |
                                                                LIBRAW_OPIONS_NO_DATAERR_CALLBACK)) {
    omp_set_num_threads(1); // counts for the calling thread alone
    raw_->set_exifparser_handler(keepDate, &date_);
    check(raw_->open_file(file.path().c_str()));
    const int flip = raw_->imgdata.sizes.flip;
    flip_ = flip >= 0 && flip < 8 ? flip : 0;
    raw_->imgdata.params.user_flip = 0; // Turning is done once and for all formats elsewhere.
    raw_->set_exifparser_handler(nullptr, nullptr);
}

Orientation RawFile::orientation() const {
    return orientationOfFlip[static_cast<std::size_t>(flip_)];
}

void RawFile::check(int error) {
    if (error == LIBRAW_SUCCESS) return;
    const bool unsupported = error == LIBRAW_FILE_UNSUPPORTED || error == LIBRAW_NOT_IMPLEMENTED ||
                             error == LIBRAW_REQUEST_FOR_NONEXISTENT_IMAGE;
    throw DevelopmentError(unsupported ? DevelopmentError::Reason::unsupported
                                       : DevelopmentError::Reason::damaged,
                           "The camera raw data is damaged or of an unknown kind.");
}

void RawFile::run(int (LibRaw::*step)(), const std::stop_token& stop) {
    auto token = stop;
    raw_->set_progress_handler(stopIfRequested, &token);
    const std::stop_callback cancel(stop, [this] { raw_->setCancelFlag(); });
    const int error = (*raw_.*step)();
    raw_->set_progress_handler(nullptr, nullptr);
    tasks::checkCancelled(stop);
    check(error);
}

void RawFile::unpack(const std::stop_token& stop) {
    run(&LibRaw::unpack, stop);
    if (!holdsPicture(*raw_))
        throw DevelopmentError(DevelopmentError::Reason::damaged, "The camera raw data holds no picture.");
}

} // namespace lumisort::images
