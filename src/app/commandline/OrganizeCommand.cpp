#include "app/commandline/Command.h"
#include "app/commandline/Folders.h"
#include "app/commandline/OpenLibrary.h"
#include "app/commandline/Text.h"
#include "library/LibraryStorage.h"
#include "library/OrganizeSelection.h"
#include "organize/FailureLine.h"
#include "organize/OrganizeEngine.h"
#include "platform/tasks/Cancellation.h"
#include "platform/text/ByteCount.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace lumisort::app {

namespace {

struct OrganizeOptions {
    std::vector<std::string> folders;
    std::string destination;
    std::string library;
    bool keepDuplicates = false;
    bool dryRun = false;
    bool json = false;
};

/// The photos to copy: of the folders or, without any, of the library; less those marked for cleanup in the
/// library document, where one takes part.
FoundPhotos chosenPhotos(const OrganizeOptions& options, Dependencies& deps) {
    if (options.folders.empty()) {
        const auto library = libraryContents(options.library, deps);
        return {library::photosToOrganize(library.available, library.marks)};
    }
    auto found = scanFolders(folderArguments(options.folders), deps);
    if (!options.library.empty()) {
        const auto session = library::readLibrary(files::FileSystem::real(), fileArgument(options.library));
        found.photos = library::photosToOrganize(found.photos, session.reviewMarks);
    }
    return found;
}

/// A line for each failure, but for the photos that an interrupt left, which `printRest` counts.
void printFailures(const std::vector<std::string>& failures, std::ostream& notes) {
    for (const auto& line : failures)
        if (!organize::isCancelledLine(line)) notes << printable(line) << '\n';
}

/// What became of the photos that are not copied, after what did of the others.
void printRest(std::int64_t duplicates, const std::vector<std::string>& failures, std::ostream& out) {
    const auto notReached = std::ranges::count_if(failures, organize::isCancelledLine);
    const auto failed = std::ssize(failures) - notReached;
    if (duplicates) out << " · " << counted(duplicates, "duplicate") << " left out";
    if (failed) out << " · " << counted(failed, "photo") << " failed";
    if (notReached) out << " · " << counted(notReached, "photo") << " not reached";
    out << '\n';
}

void printPlan(const organize::OrganizePlan& plan, std::ostream& out) {
    std::int64_t bytes = 0;
    for (const auto& item : plan.items) {
        out << printable(item.source.path()) << "\n  → " << printable(item.destination.path()) << '\n';
        bytes += item.bytes;
    }
    out << counted(std::ssize(plan.items), "photo") << " to copy · " << text::byteCount(bytes);
    printRest(plan.duplicates, plan.failures, out);
}

void printReport(const organize::OrganizeReport& report, std::ostream& out) {
    out << counted(std::ssize(report.copied), "photo") << " copied and verified";
    printRest(report.duplicates, report.failures, out);
    if (report.logURL) out << "Report: " << printable(report.logURL->path()) << '\n';
}

ExitStatus organize(const OrganizeOptions& options, Dependencies& deps) {
    const auto destination = folderArgument(options.destination, "copy photos to");
    const auto found = chosenPhotos(options, deps);
    const auto progress = [&](double fraction, const std::string& text) {
        deps.progress.show(fraction, text);
    };
    const organize::OrganizeEngine engine;

    std::vector<std::string> failures;
    if (options.dryRun) {
        const auto plan =
            engine.plan(found.photos, destination, !options.keepDuplicates, progress, deps.stop);
        deps.progress.clear();
        tasks::checkCancelled(deps.stop);
        if (options.json)
            deps.out << organize::toJson(plan) << '\n';
        else
            printPlan(plan, deps.out);
        failures = plan.failures;
    } else {
        const auto report =
            engine.copy(found.photos, destination, !options.keepDuplicates, progress, deps.stop);
        deps.progress.clear();
        if (options.json)
            deps.out << organize::toJson(report) << '\n';
        else
            printReport(report, deps.out);
        failures = report.failures;
    }
    printFailures(failures, deps.notes);
    if (found.skipped) deps.notes << counted(found.skipped, "unreadable file") << " left out\n";
    if (deps.stop.stop_requested()) return ExitStatus::interrupted;
    return found.skipped || !failures.empty() ? ExitStatus::doneWithFailures : ExitStatus::done;
}

} // namespace

void addOrganizeCommand(CLI::App& program, Command& chosen) {
    auto* command = program.add_subcommand(
        "organize", "Copy photos into a new dated folder tree, each copy verified; originals are only read");
    const auto options = std::make_shared<OrganizeOptions>();
    command->add_option("FOLDER", options->folders,
                        "Folders whose photos are copied; without any, those of the library");
    command->add_option("--to", options->destination, "Existing folder that gets the new tree")->required();
    command->add_option("--library", options->library,
                        "Library document whose photos marked For Cleanup are left out");
    command->add_flag("--keep-duplicates", options->keepDuplicates, "Copy exact duplicates too");
    command->add_flag("--dry-run", options->dryRun, "Print the plan and copy nothing");
    command->add_flag("--json", options->json, "Print JSON: the report, or the plan");
    command->callback(
        [options, &chosen] { chosen = [options](Dependencies& deps) { return organize(*options, deps); }; });
}

} // namespace lumisort::app
