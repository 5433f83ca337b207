#pragma once

#include "library/LibraryScanner.h"
#include "model/SimilarityEngines.h"
#include "model/TaskRunner.h"
#include "platform/desktop/Volume.h"
#include "platform/files/FileSystem.h"
#include "platform/time/Clock.h"

#include <chrono>
#include <functional>

namespace lumisort::model {

/// Everything around the model that a test wants in its own hands. The defaults are the real ones.
struct ModelSurroundings {
    files::FileSystem& system = files::FileSystem::real();
    time::Clock clock = time::Clock::system();
    desktop::VolumeSource volumes = desktop::mountedVolumes;
    Background background{}; ///< Qt's thread pool when empty

    /// Calls a function on the main thread after a while, unless `context` goes first.
    std::function<void(std::chrono::milliseconds, QObject* context, std::function<void()>)> after =
        afterOnTimer;

    /// The folder scan.
    std::function<library::LibraryScanner::Result(
        const files::FileUrl&, const library::LibraryScanner::Progress&, const std::stop_token&)>
        scan = library::LibraryScanner::scan;
    SimilarityEngines engines = SimilarityEngines::real();

    static void afterOnTimer(std::chrono::milliseconds delay, QObject* context,
                             std::function<void()> function);
};

} // namespace lumisort::model
