#pragma once

#include "app/commandline/ExitStatus.h"
#include "app/commandline/ProgressBar.h"

#include <functional>
#include <ostream>
#include <stop_token>

namespace CLI {
class App;
}

namespace lumisort::app {

/// What a command works with. Results go to `out`; `progress` and `notes` are for the person at the terminal.
struct Dependencies {
    std::ostream& out;
    std::ostream& notes;
    ProgressBar& progress;
    std::stop_token stop;
};

/// A command after its arguments were read. Throws tasks::Cancelled when it was interrupted, and any
/// std::exception whose message says what failed.
using Command = std::function<ExitStatus(Dependencies&)>;

/// Each adds one subcommand with its options to `program`; when that subcommand is the one on the command
/// line, `chosen` is set while the arguments are parsed.
void addScanCommand(CLI::App& program, Command& chosen);
void addMatchCommand(CLI::App& program, Command& chosen);
void addFingerprintCommand(CLI::App& program, Command& chosen);
void addOrganizeCommand(CLI::App& program, Command& chosen);
void addLibraryCommand(CLI::App& program, Command& chosen);
void addCacheCommand(CLI::App& program, Command& chosen);
void addFilmCommand(CLI::App& program, Command& chosen);
/// Below the command "film".
void addFilmInspectCommand(CLI::App& film, Command& chosen);

} // namespace lumisort::app
