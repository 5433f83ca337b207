#include "app/commandline/LibraryCommand.h"

#include "app/commandline/Command.h"
#include "app/commandline/Folders.h"
#include "app/commandline/Json.h"
#include "app/commandline/LibraryText.h"
#include "app/commandline/OpenLibrary.h"
#include "app/commandline/Text.h"
#include "library/FolderMatcher.h"
#include "library/RecordForms.h"
#include "model/VisibleRows.h"

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
    bool keep = false, cleanup = false, clear = false, evenProtected = false;
    bool json = false;
};

/// Folders stand in the document with a slash at their end, as folder choosers give them.
files::FileUrl asFolder(const files::FileUrl& url) {
    return files::FileUrl::fromPath(url.path() == "/" ? url.path() : url.path() + "/");
}

ExitStatus add(const LibraryOptions& options, Dependencies& deps) {
    const auto folders = folderArguments(options.paths);
    OpenLibrary library(options.document, deps);
    bool unreadable = false;
    for (const auto& folder : folders) {
        const auto summary = library.result(library.model().folderImport().importFolder(asFolder(folder)));
        unreadable = unreadable || summary.unreadable > 0;
        deps.out << outcomeText(summary) << '\n';
        library.wait(library.model().availability().refreshing());
    }
    library.close();
    return unreadable ? ExitStatus::doneWithFailures : ExitStatus::done;
}

ExitStatus remove(const LibraryOptions& options, Dependencies& deps) {
    OpenLibrary library(options.document, deps);
    auto& model = library.model();
    for (const auto& folder : foldersOf(model.library(), options.paths)) {
        model.removeFolder(folder);
        deps.out << outcomeText(model::FolderRemoved()) << '\n';
        library.wait(model.availability().refreshing());
    }
    library.close();
    return ExitStatus::done;
}

void writeListed(json::Writer& json, const model::Library& library, const library::Photo& photo) {
    json.beginObject();
    library::writeFields(json, photo);
    if (const auto decision = library.decision(photo)) json.key("decision").text(storedName(*decision));
    json.endObject();
}

ExitStatus list(const LibraryOptions& options, Dependencies& deps) {
    OpenLibrary open(options.document, deps);
    const auto& library = open.model().library();
    std::vector<library::Photo> photos;
    for (const auto row :
         model::visibleRows(library.state(), library.searchNames(),
                            {.section = model::sectionNamed(options.section), .text = options.search}))
        photos.push_back(library.photos()[row]);
    if (options.json) {
        printJson(deps.out, [&](json::Writer& json) {
            json.beginObject();
            json.key("photos").beginArray();
            for (const auto& photo : photos) writeListed(json, library, photo);
            json.endArray();
            json.endObject();
        });
    } else {
        for (const auto& photo : photos) {
            deps.out << printable(photo.url.path());
            if (const auto decision = library.decision(photo)) deps.out << "  " << storedName(*decision);
            deps.out << '\n';
        }
        deps.out << counted(std::ssize(photos), "photo") << '\n';
    }
    open.close();
    return ExitStatus::done;
}

/// The library's photos at these paths; `missing` counts those that are not in it, each noted.
std::vector<library::Photo> named(const std::vector<std::string>& arguments, const model::Library& library,
                                  Dependencies& deps, std::size_t& missing) {
    std::vector<library::Photo> photos;
    for (const auto& argument : arguments) {
        const auto url = fileArgument(argument);
        if (const auto found = library.photo(url)) {
            photos.push_back(*found);
        } else {
            deps.notes << printable(url.path()) << ": not in the library\n";
            ++missing;
        }
    }
    return photos;
}

/// Drops protected photos from `photos`, each noted. Returns their number.
std::size_t leaveProtected(const model::Protection& protection, std::vector<library::Photo>& photos,
                           Dependencies& deps) {
    return std::erase_if(photos, [&](const library::Photo& photo) {
        const auto folder = protection.folders().holding(photo.url);
        if (folder)
            deps.notes << printable(photo.url.path()) << ": not marked, for “" << printable(folder->path())
                       << "” is protected (--even-protected marks it)\n";
        return folder.has_value();
    });
}

ExitStatus mark(const LibraryOptions& options, Dependencies& deps) {
    OpenLibrary library(options.document, deps);
    std::size_t missing = 0;
    auto photos = named(options.paths, library.model().library(), deps, missing);
    if (options.cleanup && !options.evenProtected)
        missing += leaveProtected(library.model().protection(), photos, deps);
    const auto decision = options.keep      ? std::optional(library::ReviewDecision::keep)
                          : options.cleanup ? std::optional(library::ReviewDecision::cleanup)
                                            : std::nullopt;
    const auto summary = library.result(library.model().marking().mark(photos, decision));
    deps.out << outcomeText(summary) << '\n';
    library.close();
    return missing || summary.unavailable > 0 ? ExitStatus::doneWithFailures : ExitStatus::done;
}

ExitStatus rename(const LibraryOptions& options, Dependencies& deps) {
    OpenLibrary library(options.document, deps);
    std::size_t missing = 0;
    const auto photos = named({options.file}, library.model().library(), deps, missing);
    if (missing) return ExitStatus::failed;
    const auto renamed = library.model().rename(photos.front(), options.stem);
    if (!renamed) throw std::runtime_error(renamed.error());
    deps.out << outcomeText(model::PhotoRenamed{*renamed}) << '\n';
    library.close();
    return ExitStatus::done;
}

ExitStatus status(const LibraryOptions& options, Dependencies& deps) {
    OpenLibrary open(options.document, deps);
    const auto& library = open.model().library();
    const auto available = outcomeText(
        model::AvailabilitySummary{library.state().readableCount(), library.state().unavailableCount()});
    const auto& protectedFolders = open.model().protection().folders();
    const auto stateOf = [&](const files::FileUrl& folder) {
        return title(library.folderState(folder).value_or(library::FolderState::unavailable));
    };
    if (options.json) {
        printJson(deps.out, [&](json::Writer& json) {
            json.beginObject();
            json.key("folders").beginArray();
            for (const auto& folder : library.folders()) {
                json.beginObject();
                json.key("url").url(folder);
                json.key("state").text(stateOf(folder));
                json.key("protected").boolean(protectedFolders.protecting(folder).has_value());
                json.endObject();
            }
            json.endArray();
            json.key("photos").integer(std::ssize(library.photos()));
            json.key("available").integer(library.availableCount());
            json.key("unavailable").integer(library.unavailableCount());
            json.key("import").integer(library.keptCount());
            json.key("skip").integer(library.skipCount());
            json.key("status").text(available);
            json.endObject();
        });
    } else {
        for (const auto& folder : library.folders())
            deps.out << printable(folder.path()) << "  " << stateOf(folder)
                     << (protectedFolders.protecting(folder) ? "  Protected\n" : "\n");
        deps.out << counted(std::ssize(library.photos()), "photo") << " · " << library.keptCount()
                 << " to import · " << library.skipCount() << " to skip\n"
                 << available << '\n';
    }
    open.close();
    return ExitStatus::done;
}

} // namespace

std::vector<files::FileUrl> foldersOf(const model::Library& library,
                                      const std::vector<std::string>& arguments) {
    std::vector<files::FileUrl> folders;
    for (const auto& argument : arguments) {
        const auto path = fileArgument(argument).path();
        const auto& present = library.folders();
        const auto found = std::ranges::find(present, path, [](const files::FileUrl& folder) {
            return library::standardizedPath(folder.path());
        });
        if (found == present.end())
            throw std::runtime_error("“" + printable(path) + "” is no folder of the library.");
        folders.push_back(*found);
    }
    return folders;
}

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
                                ExitStatus (*run)(const LibraryOptions&, Dependencies&)) {
        auto* command = group->add_subcommand(name, description);
        addDocument(*command);
        command->callback([options, run, &chosen] {
            chosen = [options, run](Dependencies& deps) { return run(*options, deps); };
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
    marking->add_flag("--even-protected", options->evenProtected,
                      "With --cleanup: skip photos of protected folders, too");
    marking->add_option("FILE", options->paths, "Photos of the library")->required();
    auto* renaming = subcommand("rename", "Rename a photo's file, keeping its folder and extension", rename);
    renaming->add_option("FILE", options->file, "Photo of the library")->required();
    renaming->add_option("STEM", options->stem, "The new name without the extension")->required();
    addProtectCommands([&](const char* name, const char* description, LibraryWork work) {
        auto* command = group->add_subcommand(name, description);
        addDocument(*command);
        command->callback([options, work = std::move(work), &chosen] {
            chosen = [options, work](Dependencies& deps) { return work(options->document, deps); };
        });
        return command;
    });
    subcommand("status", "Show folders, counts and the status line", status)
        ->add_flag("--json", options->json, "Print JSON");
}

} // namespace lumisort::app
