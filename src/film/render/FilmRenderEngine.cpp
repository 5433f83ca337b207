#include "film/render/FilmRenderEngine.h"

#include "film/render/DisplayCodes.h"
#include "film/render/FilmExport.h"
#include "film/render/FilmRenderError.h"
#include "film/render/GrainSeed.h"
#include "film/render/Reduction.h"
#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <utility>

namespace lumisort::film {

namespace {

images::Bitmap atDisplaySize(const images::LinearImage& light, const std::stop_token& stop) {
    if (std::max(light.width(), light.height()) <= previewSide) return displayBitmap(light);
    return displayBitmap(reduced(light, previewSide, ReductionFilter::lanczos, onAllProcessors, stop));
}

images::LinearImage rendered(const FilmRecipe& recipe, const images::LinearImage& scene,
                             const Rectangle& wanted, StageTimes& times, const std::stop_token& stop) {
    images::LinearImage light(wanted.width, wanted.height);
    const FilmChain chain(recipe);
    const auto take = [&](PlaneView tile) {
        tile.region.x -= wanted.x;
        tile.region.y -= wanted.y;
        copyRegion(tile, light);
    };
    renderTiles(chain, scene, wanted, onAllProcessors, take, &times, stop);
    return light;
}

} // namespace

FilmRenderEngine::FilmRenderEngine(FilmInputs inputs, files::FileSystem& system, Load load)
    : inputs_(inputs), system_(system), load_(std::move(load)) {}

FilmPreview FilmRenderEngine::preview(const files::FileUrl& photo, const FilmSettings& settings,
                                      const std::stop_token& stop) {
    const std::scoped_lock lock(mutex_);
    tasks::checkCancelled(stop);
    const auto& source = previewSource(photo, stop);
    const auto made = recipe(photo, settings, source.image, stop);
    const auto light = previewStages_.render(made, source.image, onAllProcessors, &times_, stop);
    FilmPreview preview{.film = atDisplaySize(light, stop),
                        .original = {},
                        .originalWidth = source.originalWidth,
                        .originalHeight = source.originalHeight,
                        .isRAW = source.isRAW};
    if (original_.isEmpty()) original_ = atDisplaySize(source.image, stop);
    preview.original = original_.clone();
    tasks::checkCancelled(stop);
    return preview;
}

images::Bitmap FilmRenderEngine::draft(const files::FileUrl& photo, const FilmSettings& settings,
                                       int longEdge, const std::stop_token& stop) {
    const std::scoped_lock lock(mutex_);
    tasks::checkCancelled(stop);
    const auto& source = previewSource(photo, stop);
    const bool reduces = longEdge < std::max(source.image.width(), source.image.height());
    if (reduces && draft_.longEdge != longEdge)
        draft_ = {longEdge,
                  reduced(source.image, std::max(longEdge, 1), ReductionFilter::area, onAllProcessors, stop)};
    const auto& image = reduces ? draft_.image : source.image;
    const auto made = recipe(photo, settings, image, stop);
    return displayBitmap(rendered(made, image, made.picture(), times_, stop));
}

images::Bitmap FilmRenderEngine::detail(const files::FileUrl& photo, const FilmSettings& settings,
                                        const Rectangle& rectangle, const std::stop_token& stop) {
    const std::scoped_lock lock(mutex_);
    tasks::checkCancelled(stop);
    const auto& source = detailSource(photo, stop);
    const auto made = recipe(photo, settings, source.image, stop);
    const auto wanted = rectangle.grown(0, made.picture());
    if (wanted.width <= 0 || wanted.height <= 0) return {};
    return displayBitmap(rendered(made, source.image, wanted, times_, stop));
}

void FilmRenderEngine::exportPhoto(const files::FileUrl& photo, const FilmSettings& settings,
                                   const files::FileUrl& destination, const Progress& progress,
                                   const std::stop_token& stop) {
    tasks::checkCancelled(stop);
    const auto format = checkDestination(system_, photo, destination, inputs_);
    checkSourceName(photo, inputs_);
    // Before the work: a folder that cannot be written is found at once.
    PrintFile file(system_, destination, format == ExportFormat::tiff16 ? ".tif" : ".jpg");
    const std::scoped_lock lock(mutex_);
    // Two full sources at once would be two gigabytes of the largest photos.
    const auto stamp = sourceStamp(system_, photo);
    const bool kept = detail_ && detail_->stamp == stamp;
    if (!kept) detail_.reset();
    const auto loaded = kept ? FilmSource() : load_(photo, SourceScale::full, inputs_, stop);
    const auto& scene = kept ? detail_->source.image : loaded.image;
    const FilmChain chain(recipe(photo, settings, scene, stop));
    writeFilm({photo, chain, scene, &times_, progress}, file, format, stop);
}

void FilmRenderEngine::forgetDetail(const files::FileUrl& photo) {
    const std::scoped_lock lock(mutex_);
    if (detail_ && detail_->stamp.path == photo.path()) detail_.reset();
}

const FilmSource& FilmRenderEngine::previewSource(const files::FileUrl& photo, const std::stop_token& stop) {
    checkSourceName(photo, inputs_);
    const auto stamp = sourceStamp(system_, photo);
    if (!preview_ || preview_->stamp != stamp) {
        preview_.reset();
        previewStages_.forget();
        original_ = {};
        draft_ = {};
        preview_ = {stamp, load_(photo, SourceScale::preview, inputs_, stop)};
    }
    return preview_->source;
}

const FilmSource& FilmRenderEngine::detailSource(const files::FileUrl& photo, const std::stop_token& stop) {
    checkSourceName(photo, inputs_);
    const auto stamp = sourceStamp(system_, photo);
    if (!detail_ || detail_->stamp != stamp) {
        detail_.reset();
        detail_ = {stamp, load_(photo, SourceScale::full, inputs_, stop)};
    }
    return detail_->source;
}

FilmRecipe FilmRenderEngine::recipe(const files::FileUrl& photo, const FilmSettings& settings,
                                    const images::LinearImage& source, const std::stop_token& stop) {
    const auto valid = settings.validated();
    auto optics = optics_.get(valid.stock, valid.paper, stop);
    tasks::checkCancelled(stop);
    return {std::move(optics), valid, source.width(), source.height(), grainSeed(system_, photo)};
}

} // namespace lumisort::film
