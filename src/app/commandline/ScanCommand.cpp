#include "app/commandline/Command.h"
#include "app/commandline/Folders.h"
#include "app/commandline/Json.h"
#include "app/commandline/Text.h"
#include "library/RecordForms.h"
#include "platform/text/ByteCount.h"

#include <CLI/CLI.hpp>

namespace lumisort::app {

namespace {

struct ScanOptions {
    std::vector<std::string> folders;
    bool json = false;
};

void printText(const FoundPhotos& found, std::ostream& out) {
    std::int64_t bytes = 0;
    for (const auto& photo : found.photos) {
        out << printable(photo.url.path()) << "  " << photo.width << " × " << photo.height << "  "
            << text::byteCount(photo.bytes) << '\n';
        bytes += photo.bytes;
    }
    out << counted(std::ssize(found.photos), "photo") << " · " << text::byteCount(bytes);
    if (found.skipped) out << " · " << found.skipped << " unreadable";
    out << '\n';
}

ExitStatus scan(const ScanOptions& options, Dependencies& deps) {
    const auto found = scanFolders(folderArguments(options.folders), deps);
    if (options.json) {
        printJson(deps.out, [&](json::Writer& json) {
            json.beginObject();
            json.key("photos").beginArray();
            for (const auto& photo : found.photos) library::write(json, photo);
            json.endArray();
            json.key("skipped").integer(found.skipped);
            json.endObject();
        });
    } else {
        printText(found, deps.out);
    }
    return found.skipped ? ExitStatus::doneWithFailures : ExitStatus::done;
}

} // namespace

void addScanCommand(CLI::App& program, Command& chosen) {
    auto* command = program.add_subcommand("scan", "Count and list the photos in folders");
    const auto options = std::make_shared<ScanOptions>();
    command->add_option("FOLDER", options->folders, "Folders to scan, with all folders in them")->required();
    command->add_flag("--json", options->json, "Print JSON");
    command->callback(
        [options, &chosen] { chosen = [options](Dependencies& deps) { return scan(*options, deps); }; });
}

} // namespace lumisort::app
