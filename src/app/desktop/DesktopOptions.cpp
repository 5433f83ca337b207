#include "app/desktop/DesktopOptions.h"

#include <CLI/CLI.hpp>

namespace lumisort::app {

void addDesktopOptions(CLI::App& program, DesktopOptions& options) {
    auto* group = program.add_option_group("Window", "Without a command the window opens");
    group->add_option("--library", options.library, "The library document, in place of the user's own")
        ->type_name("FILE");
    group->add_option("--theme", options.theme, "Colours of the window")
        ->check(CLI::IsMember({"auto", "dark", "light"}))
        ->capture_default_str();
    group->add_flag("--self-test", options.selfTest,
                    "Load every page without a screen, print its name, exit");
    group
        ->add_option("--screenshot", options.screenshots, "Write a picture of every page into a folder, exit")
        ->type_name("DIR");
    group->add_flag("--first-frame", options.firstFrame)->group(""); // not for people
    program.final_callback([&program, group] {
        if (program.get_subcommands().empty()) return;
        for (const auto* option : group->get_options())
            if (option->count() > 0)
                throw CLI::ValidationError(option->get_name(), "is for the window and goes with no command");
    });
}

} // namespace lumisort::app
