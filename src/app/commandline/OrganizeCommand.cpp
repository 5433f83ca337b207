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
    std::string run; ///< to go on with
    bool keepDuplicates = false;
    bool newOnly = false;
    bool sidecars = false;
    bool dryRun = false;
    bool json = false;
};

struct ChosenPhotos {
    std::vector<library::Photo> photos;
    std::int64_t skipped = 0; ///< files with a photo's name that could not be read
    std::shared_ptr<const organize::KeptPhotos> kept;
};

/// Those of the photos that are marked Keep in the state that their files are in.
std::shared_ptr<const organize::KeptPhotos> keptOf(const std::vector<library::Photo>& photos,
                                                   const library::ReviewMarks& marks) {
    auto kept = std::make_shared<organize::KeptPhotos>();
    for (const auto& photo : photos) {
        const auto mark = marks.find(photo.url.path());
        if (mark == marks.end() || mark->second.decision != library::ReviewDecision::keep) continue;
        try {
            if (library::FileStamp::read(files::FileSystem::real(), photo.url) == mark->second.stamp)
                kept->insert(photo.url);
        } catch (const files::FileError&) { // NOLINT(bugprone-empty-catch): the run reports the photo
        }
    }
    return kept;
}

/// The photos to copy: of the folders or, without any, of the library; less those marked for cleanup in the
/// library document, where one takes part.
ChosenPhotos chosenPhotos(const OrganizeOptions& options, Dependencies& deps) {
    if (options.folders.empty()) {
        const auto library = libraryContents(options.library, deps);
        const auto photos = library::photosToOrganize(library.available, library.marks);
        return {photos, 0, keptOf(photos, library.marks)};
    }
    const auto found = scanFolders(folderArguments(options.folders), deps);
    ChosenPhotos chosen{found.photos, found.skipped, std::make_shared<const organize::KeptPhotos>()};
    if (!options.library.empty()) {
        const auto session = library::readLibrary(files::FileSystem::real(), fileArgument(options.library));
        chosen.photos = library::photosToOrganize(found.photos, session.reviewMarks);
        chosen.kept = keptOf(chosen.photos, session.reviewMarks);
    }
    return chosen;
}

/// A line for each failure, but for the photos that an interrupt left, which `printRest` counts.
void printFailures(const std::vector<std::string>& failures, std::ostream& notes) {
    for (const auto& line : failures)
        if (!organize::isCancelledLine(line)) notes << printable(line) << '\n';
}

/// What became of the photos that are not copied, after what did of the others.
void printRest(std::int64_t duplicates, std::int64_t alreadyThere, const std::vector<std::string>& failures,
               std::ostream& out) {
    const auto notReached = std::ranges::count_if(failures, organize::isCancelledLine);
    const auto failed = std::ssize(failures) - notReached;
    if (duplicates) out << " · " << counted(duplicates, "duplicate") << " left out";
    if (alreadyThere) out << " · " << counted(alreadyThere, "photo") << " already there";
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
    printRest(plan.duplicates, plan.alreadyThere, plan.failures, out);
}

void printReport(const organize::OrganizeReport& report, std::ostream& out) {
    out << counted(std::ssize(report.copied), "photo") << " copied and verified";
    printRest(report.duplicates, report.alreadyThere, report.failures, out);
    if (report.logURL) out << "Report: " << printable(report.logURL->path()) << '\n';
}

void printDifferences(const organize::ResumedRun& resumed, std::ostream& out) {
    out << resumed.present << (resumed.present == 1 ? " copy" : " copies") << " there already";
    if (resumed.added) out << " · " << counted(resumed.added, "photo") << " new since";
    if (resumed.changed) out << " · " << counted(resumed.changed, "photo") << " changed since";
    if (resumed.gone) out << " · " << counted(resumed.gone, "photo") << " not chosen any more";
    out << '\n';
}

ExitStatus resume(const OrganizeOptions& options, Dependencies& deps) {
    const auto found = chosenPhotos(options, deps);
    const auto resumed = organize::OrganizeEngine().resume(
        found.photos, fileArgument(options.run), options.sidecars ? found.kept : nullptr,
        [&](double fraction, const std::string& text) { deps.progress.show(fraction, text); }, deps.stop);
    deps.progress.clear();
    if (options.json) {
        deps.out << organize::toJson(resumed.report) << '\n';
    } else {
        printReport(resumed.report, deps.out);
        printDifferences(resumed, deps.out);
    }
    for (const auto& line : resumed.remarks) deps.notes << printable(line) << '\n';
    printFailures(resumed.report.failures, deps.notes);
    if (deps.stop.stop_requested()) return ExitStatus::interrupted;
    return found.skipped || !resumed.report.failures.empty() || !resumed.remarks.empty()
               ? ExitStatus::doneWithFailures
               : ExitStatus::done;
}

ExitStatus organize(const OrganizeOptions& options, Dependencies& deps) {
    if (!options.run.empty()) return resume(options, deps);
    const auto destination = folderArgument(options.destination, "copy photos to");
    const auto found = chosenPhotos(options, deps);
    const auto progress = [&](double fraction, const std::string& text) {
        deps.progress.show(fraction, text);
    };
    const organize::OrganizeEngine engine;
    const auto earlier = std::make_shared<const organize::EarlierCopies>(
        organize::EarlierCopies::at(files::FileSystem::real(), destination, deps.stop));
    const organize::CopyOptions copying{.skipDuplicates = !options.keepDuplicates,
                                        .leaveOut = options.newOnly ? earlier : nullptr,
                                        .withSidecars = options.sidecars ? found.kept : nullptr};

    std::vector<std::string> failures;
    if (options.dryRun) {
        const auto plan = engine.plan(found.photos, destination, copying, progress, deps.stop);
        deps.progress.clear();
        tasks::checkCancelled(deps.stop);
        if (options.json)
            deps.out << organize::toJson(plan) << '\n';
        else
            printPlan(plan, deps.out);
        failures = plan.failures;
    } else {
        const auto report = engine.copy(found.photos, destination, copying, progress, deps.stop);
        deps.progress.clear();
        if (options.json)
            deps.out << organize::toJson(report) << '\n';
        else
            printReport(report, deps.out);
        if (const auto there = earlier->likely(found.photos); there > 0 && !options.newOnly && !options.json)
            deps.out << counted(there, "photo")
                     << " had a copy there before; --new-only leaves such photos out\n";
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
    auto* destination =
        command->add_option("--to", options->destination, "Existing folder that gets the new tree");
    auto* run = command->add_option("--resume", options->run,
                                    "Go on with the unfinished run of this folder, in place of --to");
    run->excludes(destination);
    command->add_option("--library", options->library,
                        "Library document whose photos marked For Cleanup are left out");
    command->add_flag("--keep-duplicates", options->keepDuplicates, "Copy exact duplicates too")
        ->excludes(run);
    command->add_flag("--new-only", options->newOnly, "Leave out photos that earlier runs copied there")
        ->excludes(run);
    command->add_flag(
        "--sidecars", options->sidecars,
        "Write an XMP sidecar (five stars, green label) beside each copy of a photo marked Keep");
    command->add_flag("--dry-run", options->dryRun, "Print the plan and copy nothing")->excludes(run);
    command->add_flag("--json", options->json, "Print JSON: the report, or the plan");
    command->callback([options, &chosen] {
        if (options->destination.empty() && options->run.empty()) throw CLI::RequiredError("--to");
        chosen = [options](Dependencies& deps) { return organize(*options, deps); };
    });
}

} // namespace lumisort::app
