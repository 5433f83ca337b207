#pragma once

#include "platform/files/FileUrl.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace lumisort::app {

/// What the window can be told on the command line.
struct DesktopOptions {
    std::string library;        ///< path of the library document, the user's own when empty
    std::string theme = "auto"; ///< "dark", "light", or "auto" for what the desktop prefers
    bool selfTest = false;
    bool firstFrame = false; ///< to print the processor time at the first frame and exit, for benchmarks
    std::string screenshots; ///< folder for a picture of every page; none when empty
    std::vector<files::FileUrl> folders; ///< to be added to the library
    std::vector<files::FileUrl> photos;  ///< to be opened in the film editor

    /// Whether the pages are only gone through, on a screen that need not be there.
    bool isTour() const { return selfTest || !screenshots.empty(); }
};

/// Adds the options to `program`, the command "edit", and folders without a command. Another command on the
/// same line makes them a usage error, and so is a word that is neither a command nor a folder.
void addDesktopOptions(CLI::App& program, DesktopOptions& options);

} // namespace lumisort::app
