#include "app/desktop/DesktopOptions.h"

#include "app/commandline/Folders.h"
#include "app/commandline/Text.h"
#include "platform/files/FileSystem.h"
#include "platform/images/RawExtensions.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace lumisort::app {

namespace {

files::FileUrl folderNamed(const std::string& word) {
    try {
        auto folder = fileArgument(word);
        const auto status = files::FileSystem::real().status(folder.path(), files::Links::follow);
        if (status.kind == files::FileKind::directory) return folder;
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): it is no folder then
    }
    throw CLI::ValidationError("“" + printable(word) + "” is neither a command nor a folder.");
}

} // namespace

void addDesktopOptions(CLI::App& program, DesktopOptions& options) {
    auto* group = program.add_option_group("Window", "Without a command the window opens");
    const auto words = std::make_shared<std::vector<std::string>>();
    const auto* folders = program.add_option("FOLDER", *words, "Folders to add to the library");
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
    auto* edit = program.add_subcommand("edit", "Open RAW photos in the film editor");
    const auto photos = std::make_shared<std::vector<std::string>>();
    edit->add_option("PHOTO", *photos, "Camera RAW files")->required();
    program.final_callback([&program, &options, group, folders, words, edit, photos] {
        if (program.got_subcommand(edit)) {
            for (const auto& word : *photos) {
                options.photos.push_back(fileArgument(word));
                if (!images::hasRawExtension(options.photos.back().name()))
                    throw CLI::ValidationError("“" + printable(word) + "”: Film requires a RAW photo.");
            }
            return;
        }
        if (program.get_subcommands().empty()) {
            if (options.isTour() && !words->empty()) throw CLI::ExtrasError(*words);
            for (const auto& word : *words) options.folders.push_back(folderNamed(word));
            return;
        }
        if (folders->count() > 0) throw CLI::ExtrasError(*words); // of the command, for all one can tell
        for (const auto* option : group->get_options())
            if (option->count() > 0)
                throw CLI::ValidationError(option->get_name(), "is for the window and goes with no command");
    });
}

} // namespace lumisort::app
