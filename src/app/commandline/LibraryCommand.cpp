#include "app/commandline/Command.h"
#include "app/commandline/Folders.h"
#include "app/commandline/Json.h"
#include "app/commandline/OpenLibrary.h"
#include "app/commandline/Text.h"
#include "library/FolderMatcher.h"
#include "library/RecordForms.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace lumisort::app {

namespace {

struct LibraryOptions {
    std::string document;
    std::vector<std::string> paths;
    std::string section = "all";
    std::string search;
    std::string file, stem;
    bool keep = false, cleanup = false, clear = false;
    bool json = false;
};

std::string statusLine(const OpenLibrary& library) {
    return library.model().status().toStdString();
}

/// Folders stand in the document with a slash at their end, as folder choosers give them.
files::FileUrl asFolder(const files::FileUrl& url) {
    return files::FileUrl::fromPath(url.path() == "/" ? url.path() : url.path() + "/");
}

ExitStatus add(const LibraryOptions& options, Surroundings& with) {
    const auto folders = folderArguments(options.paths);
    OpenLibrary library(options.document, with);
    bool unreadable = false;
    for (const auto& folder : folders) {
        library.model().importFolder(asFolder(folder));
        library.wait(library.model().working());
        const auto status = statusLine(library);
        unreadable = unreadable || status.ends_with(" unreadable");
        with.out << status << '\n';
        library.wait(library.model().refreshing());
    }
    library.close();
    return unreadable ? ExitStatus::doneWithFailures : ExitStatus::done;
}

ExitStatus remove(const LibraryOptions& options, Surroundings& with) {
    OpenLibrary library(options.document, with);
    auto& model = library.model();
    std::vector<files::FileUrl> folders;
    for (const auto& argument : options.paths) {
        const auto path = fileArgument(argument).path();
        const auto found = std::ranges::find(model.folders(), path, [](const files::FileUrl& folder) {
            return library::standardizedPath(folder.path());
        });
        if (found == model.folders().end())
            throw std::runtime_error("“" + printable(path) + "” is no folder of the library.");
        folders.push_back(*found);
    }
    for (const auto& folder : folders) {
        model.removeFolder(folder);
        with.out << statusLine(library) << '\n';
        library.wait(model.refreshing());
    }
    library.close();
    return ExitStatus::done;
}

void writeListed(json::Writer& json, const model::LibraryModel& model, const library::Photo& photo) {
    json.beginObject();
    library::writeFields(json, photo);
    if (const auto decision = model.decision(photo)) json.key("decision").text(rawValue(*decision));
    json.endObject();
}

ExitStatus list(const LibraryOptions& options, Surroundings& with) {
    OpenLibrary library(options.document, with);
    auto& model = library.model();
    model.setSection(QString::fromStdString(options.section));
    model.setQuery(QString::fromStdString(options.search));
    const auto photos = model.visible();
    if (options.json) {
        printJson(with.out, [&](json::Writer& json) {
            json.beginObject();
            json.key("photos").beginArray();
            for (const auto& photo : photos) writeListed(json, model, photo);
            json.endArray();
            json.endObject();
        });
    } else {
        for (const auto& photo : photos) {
            with.out << printable(photo.url.path());
            if (const auto decision = model.decision(photo)) with.out << "  " << rawValue(*decision);
            with.out << '\n';
        }
        with.out << counted(std::ssize(photos), "photo") << '\n';
    }
    library.close();
    return ExitStatus::done;
}

/// The library's photos at these paths; `missing` counts those that are not in it, each noted.
std::vector<library::Photo> named(const std::vector<std::string>& arguments, const model::LibraryModel& model,
                                  Surroundings& with, std::size_t& missing) {
    std::vector<library::Photo> photos;
    for (const auto& argument : arguments) {
        const auto path = fileArgument(argument).path();
        const auto found =
            std::ranges::find(model.photos(), path, [](const library::Photo& photo) -> const std::string& {
                return photo.url.path();
            });
        if (found != model.photos().end()) {
            photos.push_back(*found);
        } else {
            with.notes << printable(path) << ": not in the library\n";
            ++missing;
        }
    }
    return photos;
}

ExitStatus mark(const LibraryOptions& options, Surroundings& with) {
    OpenLibrary library(options.document, with);
    std::size_t missing = 0;
    const auto photos = named(options.paths, library.model(), with, missing);
    library.model().mark(photos, options.keep      ? std::optional(library::ReviewDecision::keep)
                                 : options.cleanup ? std::optional(library::ReviewDecision::cleanup)
                                                   : std::nullopt);
    library.wait(library.model().marking());
    const auto status = statusLine(library);
    with.out << status << '\n';
    library.close();
    return missing || status.ends_with(" unavailable") ? ExitStatus::doneWithFailures : ExitStatus::done;
}

ExitStatus rename(const LibraryOptions& options, Surroundings& with) {
    OpenLibrary library(options.document, with);
    std::size_t missing = 0;
    const auto photos = named({options.file}, library.model(), with, missing);
    if (missing) return ExitStatus::failed;
    library.model().rename(photos.front(), options.stem);
    with.out << statusLine(library) << '\n';
    library.close();
    return ExitStatus::done;
}

ExitStatus status(const LibraryOptions& options, Surroundings& with) {
    OpenLibrary library(options.document, with);
    auto& model = library.model();
    const auto stateOf = [&](const files::FileUrl& folder) {
        return title(model.folderState(folder).value_or(library::FolderState::unavailable));
    };
    if (options.json) {
        printJson(with.out, [&](json::Writer& json) {
            json.beginObject();
            json.key("folders").beginArray();
            for (const auto& folder : model.folders()) {
                json.beginObject();
                json.key("url").url(folder);
                json.key("state").text(stateOf(folder));
                json.endObject();
            }
            json.endArray();
            json.key("photos").integer(std::ssize(model.photos()));
            json.key("available").integer(model.availableCount());
            json.key("unavailable").integer(model.unavailableCount());
            json.key("import").integer(model.importCount());
            json.key("skip").integer(model.skipCount());
            json.key("status").text(statusLine(library));
            json.endObject();
        });
    } else {
        for (const auto& folder : model.folders())
            with.out << printable(folder.path()) << "  " << stateOf(folder) << '\n';
        with.out << counted(std::ssize(model.photos()), "photo") << " · " << model.importCount()
                 << " to import · " << model.skipCount() << " to skip\n"
                 << statusLine(library) << '\n';
    }
    library.close();
    return ExitStatus::done;
}

} // namespace

void addLibraryCommand(CLI::App& program, Command& chosen) {
    auto* group = program.add_subcommand("library", "The library of folders, photos and marks");
    group->require_subcommand(1);
    const auto options = std::make_shared<LibraryOptions>();
    const auto addDocument = [&](CLI::App& command) {
        command.add_option("--library", options->document,
                           "The library document, in place of the user's own");
    };
    addDocument(*group); // before the command's name as well as behind it
    const auto subcommand = [&](const char* name, const char* description,
                                ExitStatus (*run)(const LibraryOptions&, Surroundings&)) {
        auto* command = group->add_subcommand(name, description);
        addDocument(*command);
        command->callback([options, run, &chosen] {
            chosen = [options, run](Surroundings& with) { return run(*options, with); };
        });
        return command;
    };
    subcommand("add", "Scan folders and add the photos that are new", add)
        ->add_option("FOLDER", options->paths, "Folders")
        ->required();
    subcommand("remove", "Forget folders, their records and marks; files stay as they are", remove)
        ->add_option("FOLDER", options->paths, "Folders of the library")
        ->required();
    auto* listing = subcommand("list", "List photos", list);
    listing->add_option("--section", options->section, "Which photos")
        ->check(CLI::IsMember({"all", "offline", "keep", "cleanup"}))
        ->capture_default_str();
    listing->add_option("--search", options->search, "Text that the file's name must hold");
    listing->add_flag("--json", options->json, "Print JSON");
    auto* marking = subcommand("mark", "Mark photos", mark);
    auto* decision = marking->add_option_group("decision");
    decision->add_flag("--keep", options->keep, "Import them");
    decision->add_flag("--cleanup", options->cleanup, "Skip them");
    decision->add_flag("--clear", options->clear, "Take the mark away");
    decision->require_option(1);
    marking->add_option("FILE", options->paths, "Photos of the library")->required();
    auto* renaming = subcommand("rename", "Rename a photo's file, keeping its folder and extension", rename);
    renaming->add_option("FILE", options->file, "Photo of the library")->required();
    renaming->add_option("STEM", options->stem, "The new name without the extension")->required();
    subcommand("status", "Show folders, counts and the status line", status)
        ->add_flag("--json", options->json, "Print JSON");
}

} // namespace lumisort::app
