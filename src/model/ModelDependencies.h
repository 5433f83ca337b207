#pragma once

#include "library/FolderScan.h"
#include "model/MatchEngine.h"
#include "model/TaskRunner.h"
#include "platform/files/FileSystem.h"
#include "platform/time/Clock.h"
#include "platform/volumes/Volume.h"

#include <chrono>
#include <functional>

namespace lumisort::model {

/// Everything around the model that a test wants in its own hands. The defaults are the real ones.
struct ModelDependencies {
    files::FileSystem& system = files::FileSystem::real();
    time::Clock clock = time::Clock::system();
    volumes::VolumeSource volumes = volumes::mountedVolumes;
    Background background{}; ///< Qt's thread pool when empty

    /// Calls a function on the main thread after a while, unless `context` goes first.
    std::function<void(std::chrono::milliseconds, QObject* context, std::function<void()>)> after =
        afterOnTimer;

    /// The folder scan.
    std::function<library::FolderScan(const files::FileUrl&, const library::ScanProgress&,
                                      const std::stop_token&)>
        scan = std::bind_front(library::scanFolder, std::ref(files::FileSystem::real()));
    MatchEngine findMatches = similarity::findMatches;

    static void afterOnTimer(std::chrono::milliseconds delay, QObject* context,
                             std::function<void()> function);
};

} // namespace lumisort::model
