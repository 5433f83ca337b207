#pragma once

#include "platform/files/FileSystem.h"
#include "platform/files/FileUrl.h"
#include "platform/images/LinearImage.h"

#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>

namespace lumisort::film {

/// Which photos the engine renders.
enum class FilmInputs {
    raw,            ///< camera RAW alone, exported as TIFF alone
    renderedAsWell, ///< any photo that can be decoded, for tests; exported as JPEG as well
};

/// Longest side of what a preview is rendered from, in pixels.
inline constexpr int previewSourceSide = 3200;
/// Largest photo that is rendered.
inline constexpr std::int64_t mostFilmPixels = 80'000'000;
inline constexpr std::int64_t mostFilmSide = 32'768;

enum class SourceScale {
    preview, ///< reduced to previewSourceSide
    full,
};

/// A photo as scene-linear light, upright.
struct FilmSource {
    images::LinearImage image;
    int originalWidth = 0; ///< of the photo at full scale, upright
    int originalHeight = 0;
    bool isRAW = false;
};

/// Throws FilmRenderError (rawRequired) for a name that is not that of a camera RAW, unless all inputs are
/// taken. Looks at nothing but the name.
void checkSourceName(const files::FileUrl& photo, FilmInputs inputs);

/// Develops a RAW photo neutrally, or decodes a rendered one, after checking its name, its type and its size.
/// Throws FilmRenderError, FileError and tasks::Cancelled.
FilmSource loadSource(const files::FileUrl& photo, SourceScale scale, FilmInputs inputs,
                      const std::stop_token& stop);

/// The state of a photo's file, which tells whether what was developed from it is still the same.
struct SourceStamp {
    std::string path;
    files::FileStatus status;

    friend bool operator==(const SourceStamp&, const SourceStamp&) = default;
};
SourceStamp sourceStamp(files::FileSystem& system, const files::FileUrl& photo);

} // namespace lumisort::film
