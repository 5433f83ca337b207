#include "app/commandline/Command.h"
#include "app/commandline/Interrupt.h"
#include "app/desktop/StartDesktop.h"
#include "platform/images/Decoder.h"
#include "platform/tasks/Cancellation.h"

#include <CLI/CLI.hpp>

#include <clocale>
#include <exception>
#include <iostream>

namespace {

using namespace lumisort::app;

ExitStatus run(const Command& command, const Interrupt& interrupt) {
    ProgressBar progress;
    Dependencies deps{.out = std::cout, .notes = std::cerr, .progress = progress, .stop = interrupt.token()};
    try {
        const auto status = command(deps);
        std::cout.flush();
        if (!std::cout) throw std::runtime_error("The results could not be written to standard output.");
        return status;
    } catch (const lumisort::tasks::Cancelled&) {
        return ExitStatus::interrupted;
    } catch (const std::exception& error) {
        progress.clear();
        std::cerr << "lumisort: " << error.what() << '\n';
        return ExitStatus::failed;
    }
}

} // namespace

int main(int argc, char** argv) {
    const Interrupt interrupt;
    std::ios::sync_with_stdio(false);

    CLI::App program("Thin out a large photo collection without risking the originals.", "lumisort");
    program.set_version_flag("--version", "lumisort " LUMISORT_VERSION);
    program.require_subcommand(0, 1);
    bool verbose = false;
    program.add_flag("--verbose", verbose, "Let through what the decoding libraries print");
    program.footer("Exit status: 0 done, 1 done with files that failed, 2 usage, 3 failed, 130 interrupted.");
    program.fallthrough();

    DesktopOptions desktop;
    addDesktopOptions(program, desktop);
    Command chosen = [&desktop](Dependencies& deps) { return startDesktop(desktop, deps.stop); };
    addScanCommand(program, chosen);
    addMatchCommand(program, chosen);
    addFingerprintCommand(program, chosen);
    addOrganizeCommand(program, chosen);
    addLibraryCommand(program, chosen);
    addCacheCommand(program, chosen);
    addFilmCommand(program, chosen);
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return program.exit(error) == 0 ? 0 : static_cast<int>(ExitStatus::usage);
    }
    lumisort::images::initialiseDecoder({.verbose = verbose});
    return static_cast<int>(run(chosen, interrupt));
}
