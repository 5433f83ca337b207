#include "film/render/FilmExport.h"

#include "film/render/DisplayCodes.h"
#include "film/render/FilmRenderError.h"
#include "platform/files/ResolvedPath.h"
#include "platform/images/Decoder.h"
#include "platform/tasks/ParallelFor.h"

#include <algorithm>
#include <bit>
#include <cctype>
#include <span>
#include <string>

namespace lumisort::film {

namespace {

constexpr int jpegQuality = 96;
/// Rows of one band: several tiles for each thread of a wide picture.
constexpr int bandRows = 512;

/// The path without symbolic links; of a file that is not there, that of its folder and its name.
std::string resolvedOrGiven(files::FileSystem& system, const files::FileUrl& file) {
    try {
        return files::resolvedPath(system, file.path());
    } catch (const files::FileError& error) {
        if (!error.isMissing()) throw;
    }
    try {
        return files::resolvedPath(system, file.parent().path()) + '/' + std::string(file.name());
    } catch (const files::FileError& error) {
        if (!error.isMissing()) throw;
    }
    return file.path();
}

bool exists(files::FileSystem& system, const std::string& path) {
    try {
        system.status(path, files::Links::doNotFollow);
        return true;
    } catch (const files::FileError& error) {
        if (error.isMissing()) return false;
        throw;
    }
}

/// Renders band after band; while one is rendered, the thread that takes the first job passes the one before
/// to `write`.
void renderBands(const FilmPicture& picture, const std::function<void(const CodeRows&)>& write,
                 const std::stop_token& stop) {
    const auto whole = picture.chain.picture();
    CodeRows finished, current;
    for (int y = 0; y < whole.height; y += bandRows) {
        const int rows = std::min(bandRows, whole.height - y);
        current.width = whole.width;
        current.firstRow = y;
        current.rowCount = rows;
        current.rgba.resize(4 * static_cast<std::size_t>(whole.width) * static_cast<std::size_t>(rows));
        const ParallelFor besideWriting = [&](std::size_t count, const std::function<void(std::size_t)>& work,
                                              std::stop_token) {
            tasks::parallelFor(count + 1, 0, stop, [&](std::size_t index) {
                if (index > 0) return work(index - 1);
                if (finished.rowCount > 0) write(finished);
            });
        };
        renderTiles(
            picture.chain, picture.scene, {0, y, whole.width, rows}, besideWriting,
            [&](const PlaneView& tile) { encode(tile, current); }, picture.times, stop);
        std::swap(finished, current);
        if (picture.progress) picture.progress(static_cast<double>(y + rows) / whole.height);
    }
    write(finished);
}

std::string jpegOf(const FilmPicture& picture, const std::stop_token& stop) {
    const auto whole = picture.chain.picture();
    images::Bitmap bitmap(whole.width, whole.height);
    auto* to = bitmap.rgba().data();
    renderBands(
        picture,
        [&](const CodeRows& rows) {
            for (const auto code : rows.rgba) *to++ = static_cast<std::uint8_t>((code + 128) / 257);
        },
        stop);
    return images::decoder().encodeJpeg(bitmap, jpegQuality);
}

} // namespace

ExportFormat checkDestination(files::FileSystem& system, const files::FileUrl& photo,
                              const files::FileUrl& destination, FilmInputs inputs) {
    if (destination.empty() || destination.name().empty() || destination.endsInSlash())
        throw FilmRenderError(FilmRenderProblem::invalidDestination);
    std::string extension(destination.extension());
    std::ranges::transform(extension, extension.begin(), [](unsigned char c) { return std::tolower(c); });
    const bool tiff = extension == "tif" || extension == "tiff";
    if (!tiff && inputs == FilmInputs::raw) throw FilmRenderError(FilmRenderProblem::tiffRequired);
    if (resolvedOrGiven(system, photo) == resolvedOrGiven(system, destination))
        throw FilmRenderError(FilmRenderProblem::sourceOverwrite);
    if (exists(system, destination.path())) throw FilmRenderError(FilmRenderProblem::outputExists);
    return tiff ? ExportFormat::tiff16 : ExportFormat::jpeg;
}

void writeFilm(const FilmPicture& picture, PrintFile& file, ExportFormat format,
               const std::stop_token& stop) {
    tasks::checkCancelled(stop);
    if (format == ExportFormat::tiff16) {
        const auto whole = picture.chain.picture();
        static_assert(std::endian::native == std::endian::little,
                      "samples are written as they lie in memory");
        const auto head = images::decoder().tiffHead(picture.photo, whole.width, whole.height);
        file.write(std::as_bytes(std::span(head)));
        renderBands(
            picture, [&](const CodeRows& rows) { file.write(std::as_bytes(std::span(rows.rgba))); }, stop);
    } else {
        const auto bytes = jpegOf(picture, stop);
        file.write(std::as_bytes(std::span(bytes)));
    }
    tasks::checkCancelled(stop);
    file.finish();
}

} // namespace lumisort::film
