#include "app/commandline/LibraryText.h"

#include "app/commandline/Text.h"

namespace lumisort::app {

namespace {

/// " · 2 unreadable", "" for none.
std::string part(std::size_t count, std::string_view what) {
    return count > 0 ? " · " + std::to_string(count) + ' ' + std::string(what) : std::string();
}

} // namespace

std::string outcomeText(const model::ImportSummary& summary) {
    return counted(static_cast<std::int64_t>(summary.scanned), "photo") + " scanned" +
           part(summary.unreadable, "unreadable") + (summary.stopped ? " · stopped" : "");
}

std::string outcomeText(const model::MarkSummary& summary) {
    return std::to_string(summary.marked) + " marked" + part(summary.unavailable, "unavailable");
}

std::string outcomeText(const model::PhotoRenamed& renamed) {
    return "Renamed to " + printable(renamed.photo.url.name());
}

std::string outcomeText(const model::FolderRemoved&) {
    return "Removed from library · Files unchanged";
}

std::string outcomeText(const model::AvailabilitySummary& summary) {
    return std::to_string(summary.available) + " available · " + std::to_string(summary.unavailable) +
           " unavailable";
}

} // namespace lumisort::app
