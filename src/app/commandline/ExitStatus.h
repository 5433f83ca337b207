#pragma once

namespace lumisort::app {

/// What the program hands back to the shell.
enum class ExitStatus {
    done = 0,
    doneWithFailures = 1, ///< finished, but some files could not be read, matched or copied
    usage = 2,
    failed = 3,
    interrupted = 130, ///< 128 + SIGINT, as shells report it
};

} // namespace lumisort::app
