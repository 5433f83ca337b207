#include "app/commandline/Command.h"
#include "app/commandline/Folders.h"
#include "app/commandline/Matches.h"
#include "app/commandline/OpenLibrary.h"
#include "app/commandline/Text.h"
#include "platform/files/AtomicFile.h"
#include "similarity/report/ContactSheet.h"

#include <CLI/CLI.hpp>

namespace lumisort::app {

namespace {

constexpr text::EnumNames<similarity::SimilarityMethod, 3> methodWords{{"exact", "near", "visual"}};
constexpr text::EnumNames<similarity::SimilarityLevel, 3> levelWords{{"strict", "balanced", "loose"}};

struct MatchOptions {
    std::vector<std::string> folders;
    std::string library;
    std::string method = "visual";
    std::string level = "balanced";
    std::string contactSheet;
    bool json = false;
    bool noCache = false;
};

template <class Names>
std::vector<std::string> words(const Names& words) {
    return {words.names.begin(), words.names.end()};
}

void writeContactSheet(const MatchOptions& options, const Matches& matches, Dependencies& deps) {
    std::string page;
    similarity::writeContactSheet(
        matches.result.groups,
        {.title = std::string(storedName(matches.method)),
         .subtitle = matches.method == similarity::SimilarityMethod::exact ? "" : options.level,
         .failures = matches.result.failures},
        [&](std::string_view piece) { page += piece; }, deps.stop);
    const auto file = fileArgument(options.contactSheet);
    files::replaceFile(files::FileSystem::real(), file.path(), page);
    deps.notes << "Written: " << printable(file.path()) << '\n';
}

ExitStatus match(const MatchOptions& options, Dependencies& deps) {
    const auto method = methodWords.find(options.method).value();
    const auto level = levelWords.find(options.level).value();
    const auto found = options.folders.empty() ? FoundPhotos{libraryContents(options.library, deps).available}
                                               : scanFolders(folderArguments(options.folders), deps);
    const auto matches = findMatches(found.photos, method, level,
                                     options.noCache ? StoredValues::ignored : StoredValues::used, deps);
    deps.progress.clear();
    if (!options.contactSheet.empty()) writeContactSheet(options, matches, deps);
    if (options.json)
        printJson(matches, deps.out);
    else
        printText(matches, deps.out);
    if (found.skipped) deps.notes << found.skipped << " unreadable files were left out\n";
    return found.skipped || matches.failed() ? ExitStatus::doneWithFailures : ExitStatus::done;
}

} // namespace

void addMatchCommand(CLI::App& program, Command& chosen) {
    auto* command =
        program.add_subcommand("match", "Group photos that are copies of each other or look alike");
    const auto options = std::make_shared<MatchOptions>();
    command->add_option("FOLDER", options->folders, "Folders to look through; without any, the library");
    command->add_option("--library", options->library, "The library document, in place of the user's own");
    command->add_option("--method", options->method, "What counts as a match")
        ->check(CLI::IsMember(words(methodWords)))
        ->capture_default_str();
    command->add_option("--level", options->level, "How alike photos must be (near, visual)")
        ->check(CLI::IsMember(words(levelWords)))
        ->capture_default_str();
    command->add_option("--contact-sheet", options->contactSheet,
                        "Write the groups with thumbnails into this HTML page");
    command->add_flag("--json", options->json, "Print JSON");
    command->add_flag("--no-cache", options->noCache,
                      "Neither use what earlier runs computed nor store what this one does (near, visual)");
    command->callback(
        [options, &chosen] { chosen = [options](Dependencies& deps) { return match(*options, deps); }; });
}

} // namespace lumisort::app
