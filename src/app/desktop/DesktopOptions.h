#pragma once

#include <string>

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

    /// Whether the pages are only gone through, on a screen that need not be there.
    bool isTour() const { return selfTest || !screenshots.empty(); }
};

/// Adds the options to `program`. A command on the same line makes them a usage error.
void addDesktopOptions(CLI::App& program, DesktopOptions& options);

} // namespace lumisort::app
