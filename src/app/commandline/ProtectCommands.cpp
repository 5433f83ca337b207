#include "app/commandline/Folders.h"
#include "app/commandline/LibraryCommand.h"
#include "app/commandline/OpenLibrary.h"
#include "app/commandline/Text.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <stdexcept>

namespace lumisort::app {

namespace {

ExitStatus setProtected(const std::string& document, const std::vector<std::string>& paths, bool isProtected,
                        Dependencies& deps) {
    OpenLibrary library(document, deps);
    auto& protection = library.model().protection();
    for (const auto& folder : foldersOf(library.model().library(), paths)) {
        if (const auto stored = library.result(protection.set(folder, isProtected)); !stored)
            throw std::runtime_error(stored.error());
        deps.out << printable(folder.path()) << ": ";
        if (isProtected)
            deps.out << "protected\n";
        else if (protection.folders().protecting(folder))
            deps.out << "still protected through a folder above it\n";
        else
            deps.out << "not protected any more\n";
    }
    library.close();
    return ExitStatus::done;
}

} // namespace

void addProtectCommands(const AddLibraryWork& add) {
    const auto addOne = [&](const char* name, const char* description, bool isProtected) {
        const auto paths = std::make_shared<std::vector<std::string>>();
        add(name, description,
            [paths, isProtected](const std::string& document, Dependencies& deps) {
                return setProtected(document, *paths, isProtected, deps);
            })
            ->add_option("FOLDER", *paths, "Folders of the library")
            ->required();
    };
    addOne("protect", "Protect folders: their photos are not skipped unless that is asked for", true);
    addOne("unprotect", "End the protection of folders", false);
}

} // namespace lumisort::app
