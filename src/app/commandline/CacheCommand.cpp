#include "app/commandline/Command.h"
#include "app/commandline/Json.h"
#include "app/commandline/Text.h"
#include "platform/text/ByteCount.h"
#include "similarity/database/FingerprintDatabase.h"

#include <CLI/CLI.hpp>

#include <stdexcept>

namespace lumisort::app {

namespace {

/// The database of this user, or an exception that says why it cannot be used.
std::unique_ptr<similarity::FingerprintDatabase> openDatabase() {
    auto database =
        std::make_unique<similarity::FingerprintDatabase>(similarity::FingerprintDatabase::defaultFile());
    if (const auto problem = database->problem(); !problem.empty()) throw std::runtime_error(problem);
    return database;
}

ExitStatus status(bool asJson, Dependencies& deps) {
    const auto database = openDatabase();
    const auto found = database->status();
    if (asJson) {
        printJson(deps.out, [&](json::Writer& json) {
            json.beginObject();
            json.key("file").text(database->file());
            json.key("photos").integer(found.photos);
            json.key("values").integer(found.values);
            json.key("bytes").integer(found.bytes);
            json.key("limit").integer(similarity::FingerprintDatabase::defaultLimitBytes);
            json.endObject();
        });
    } else {
        deps.out << printable(database->file()) << '\n'
                 << counted(found.photos, "photo") << " · " << counted(found.values, "value") << " · "
                 << text::byteCount(found.bytes) << " of at most "
                 << text::byteCount(similarity::FingerprintDatabase::defaultLimitBytes) << '\n';
    }
    return ExitStatus::done;
}

ExitStatus clear(Dependencies& deps) {
    const auto database = openDatabase();
    const auto before = database->status();
    database->clear();
    if (const auto problem = database->problem(); !problem.empty()) throw std::runtime_error(problem);
    if (database->status().values > 0)
        throw std::runtime_error("“" + printable(database->file()) + "” is in use by another program.");
    deps.out << "Removed: " << counted(before.values, "value") << '\n';
    return ExitStatus::done;
}

} // namespace

void addCacheCommand(CLI::App& program, Command& chosen) {
    auto* group = program.add_subcommand("cache", "What earlier searches computed of photos");
    group->require_subcommand(1);
    const auto json = std::make_shared<bool>();
    auto* showing = group->add_subcommand("status", "Show where it is, how much it holds and its size");
    showing->add_flag("--json", *json, "Print JSON");
    showing->callback(
        [json, &chosen] { chosen = [json](Dependencies& deps) { return status(*json, deps); }; });
    group->add_subcommand("clear", "Remove everything; the next search computes it again")
        ->callback([&chosen] { chosen = clear; });
}

} // namespace lumisort::app
