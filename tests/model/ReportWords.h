#pragma once

#include "model/Report.h"

#include <string>

namespace lumisort::model {

/// A report in one line, for tests to compare: its name and its fields.
inline std::string words(const Report& report) {
    struct Words {
        static std::string list(std::initializer_list<std::size_t> numbers) {
            std::string line;
            for (const auto number : numbers) line += ' ' + std::to_string(number);
            return line;
        }
        std::string operator()(const LibraryRestored&) const { return "restored"; }
        std::string operator()(const NothingToRestore&) const { return "nothing to restore"; }
        std::string operator()(const RestoreFailed& failed) const {
            return "restore failed: " + failed.reason;
        }
        std::string operator()(const DocumentsKept& documents) const {
            std::string line = "kept";
            for (const auto& kept : {documents.kept.changed, documents.kept.unreadable})
                if (kept) line += ' ' + std::string(kept->name());
            return line;
        }
        std::string operator()(const SaveFailed& failed) const { return "save failed: " + failed.reason; }
        std::string operator()(const FolderScanStarted& started) const {
            return "scanning " + std::string(started.folder.name());
        }
        std::string operator()(const FolderScanProgress& progress) const {
            return "found" + list({progress.found});
        }
        std::string operator()(const ImportSummary& summary) const {
            return "imported" + list({summary.scanned, summary.unreadable}) +
                   (summary.stopped ? " stopped" : "");
        }
        std::string operator()(const FolderRemoved&) const { return "removed"; }
        std::string operator()(const Stopping&) const { return "stopping"; }
        std::string operator()(const AvailabilitySummary& summary) const {
            return "available" + list({summary.available, summary.unavailable});
        }
        std::string operator()(const MarkSummary& summary) const {
            return "marked" + list({summary.marked, summary.unavailable});
        }
        std::string operator()(const PhotoRenamed& renamed) const {
            return "renamed " + std::string(renamed.photo.url.name());
        }
        std::string operator()(const MatchStarted&) const { return "analyzing"; }
        std::string operator()(const MatchProgress& progress) const { return progress.text; }
        std::string operator()(const MatchSummary& summary) const {
            return std::string(storedName(summary.method)) +
                   list({summary.groups, summary.unreadable, summary.lowDetail, summary.failures.size()});
        }
        std::string operator()(const StorageProblem& problem) const { return problem.line; }
        std::string operator()(const DocumentProblem& problem) const { return problem.line; }
        std::string operator()(const MatchCancelled&) const { return "cancelled"; }
        std::string operator()(const MatchFailed& failed) const { return "failed: " + failed.reason; }
    };
    return std::visit(Words(), report);
}

} // namespace lumisort::model
