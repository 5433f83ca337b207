#pragma once

#include "film/render/FilmChain.h"
#include "film/render/FilmSource.h"
#include "film/render/OpticsCache.h"
#include "film/render/PreviewStages.h"
#include "platform/files/FileSystem.h"
#include "platform/images/Bitmap.h"

#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>

namespace lumisort::film {

/// Longest side of a preview, in pixels.
inline constexpr int previewSide = 1600;

/// What an editor shows of one photo.
struct FilmPreview {
    images::Bitmap film;     ///< the simulated print; longest side at most previewSide
    images::Bitmap original; ///< the neutral development in the same size
    int originalWidth = 0;   ///< of the photo, upright
    int originalHeight = 0;
    bool isRAW = false;
};

/// Turns photos into pictures of their film prints. One render at a time: calls from several threads wait for
/// each other. It keeps the optics that it built, the reduced source and the stages of the last preview, and
/// the full source of the last detail.
///
/// Every call throws FilmRenderError, FileError, or tasks::Cancelled within one tile of a stop; then nothing
/// is kept that is not whole, and nothing is left at a destination.
class FilmRenderEngine {
public:
    /// How photos become light; loadSource() except in tests.
    using Load =
        std::function<FilmSource(const files::FileUrl&, SourceScale, FilmInputs, const std::stop_token&)>;
    /// The share of an export that is done, 0…1, from one thread at a time.
    using Progress = std::function<void(double)>;

    explicit FilmRenderEngine(FilmInputs inputs = FilmInputs::raw,
                              files::FileSystem& system = files::FileSystem::real(), Load load = loadSource);

    FilmPreview preview(const files::FileUrl& photo, const FilmSettings& settings,
                        const std::stop_token& stop = {});

    /// The preview's film rendered from a source that is reduced to `longEdge` pixels.
    images::Bitmap draft(const files::FileUrl& photo, const FilmSettings& settings, int longEdge,
                         const std::stop_token& stop = {});

    /// The pixels of the export inside `rectangle`, in 8 bits; what lies outside of the photo is left out.
    images::Bitmap detail(const files::FileUrl& photo, const FilmSettings& settings,
                          const Rectangle& rectangle, const std::stop_token& stop = {});

    /// Frees the full source that detail() keeps of this photo, up to a gigabyte.
    void forgetDetail(const files::FileUrl& photo);

    /// Writes the whole photo as a 16-bit TIFF, or as a JPEG where the engine takes rendered photos and the
    /// name does not end in tif or tiff. Nothing is ever replaced.
    void exportPhoto(const files::FileUrl& photo, const FilmSettings& settings,
                     const files::FileUrl& destination, const Progress& progress = {},
                     const std::stop_token& stop = {});

    /// Processor time that the stages have taken in all renders so far.
    const StageTimes& stageTimes() const { return times_; }

private:
    struct Kept {
        SourceStamp stamp;
        FilmSource source;
    };
    struct Draft {
        int longEdge = 0;
        images::LinearImage image;
    };

    const FilmSource& previewSource(const files::FileUrl& photo, const std::stop_token& stop);
    const FilmSource& detailSource(const files::FileUrl& photo, const std::stop_token& stop);
    FilmRecipe recipe(const files::FileUrl& photo, const FilmSettings& settings,
                      const images::LinearImage& source, const std::stop_token& stop);

    const FilmInputs inputs_;
    files::FileSystem& system_;
    const Load load_;
    StageTimes times_{};

    std::mutex mutex_; // guards the rest
    OpticsCache optics_;
    std::optional<Kept> preview_;
    PreviewStages previewStages_; ///< of preview_
    images::Bitmap original_;     ///< of preview_, in the preview's size
    Draft draft_;                 ///< of preview_
    std::optional<Kept> detail_;
};

} // namespace lumisort::film
