#pragma once

#include "film/render/FilmChain.h"
#include "film/render/FilmSource.h"
#include "film/render/PrintFile.h"
#include "platform/files/FileSystem.h"
#include "platform/files/FileUrl.h"

#include <functional>
#include <stop_token>

namespace lumisort::film {

enum class ExportFormat { tiff16, jpeg };

/// The format that a destination's name asks for. Throws FilmRenderError where it may not be written:
/// invalidDestination, tiffRequired, sourceOverwrite and outputExists, looked for in this order. Reads no
/// photo.
ExportFormat checkDestination(files::FileSystem& system, const files::FileUrl& photo,
                              const files::FileUrl& destination, FilmInputs inputs);

/// A picture that is rendered while it is written.
struct FilmPicture {
    const files::FileUrl& photo; ///< whose metadata the file carries on
    const FilmChain& chain;
    const images::LinearImage& scene;
    StageTimes* times = nullptr;
    std::function<void(double)> progress; ///< share done, 0…1; may be empty
};

/// Renders a picture in bands of rows, writes them and finishes the file. Holds two bands at a time. Throws
/// FileError, FilmRenderError and tasks::Cancelled.
void writeFilm(const FilmPicture& picture, PrintFile& file, ExportFormat format, const std::stop_token& stop);

} // namespace lumisort::film
