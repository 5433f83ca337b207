#include "review/StatusText.h"

namespace lumisort::review {

namespace {

using namespace model;
using namespace Qt::Literals::StringLiterals;

QString number(std::size_t count) {
    return QString::number(count);
}

/// "1 photo", "2 photos".
QString counted(std::size_t count, const QString& noun) {
    return number(count) + u' ' + noun + (count == 1 ? QString() : u"s"_s);
}

/// " · 2 unreadable", "" for none.
QString part(std::size_t count, const QString& what) {
    return count > 0 ? u" · "_s + number(count) + u' ' + what : QString();
}

struct Text {
    QString operator()(const LibraryRestored&) const { return u"Library restored"_s; }
    QString operator()(const NothingToRestore&) const { return u"Ready"_s; }
    QString operator()(const RestoreFailed& failed) const {
        return u"Could not restore library: "_s + QString::fromStdString(failed.reason);
    }
    QString operator()(const DocumentsKept& documents) const {
        if (const auto& changed = documents.kept.changed)
            return u"Library changed by another program · Its version kept as "_s +
                   QString::fromUtf8(changed->name());
        const auto& unreadable = documents.kept.unreadable;
        return unreadable ? u"Library could not be read · Kept as "_s + QString::fromUtf8(unreadable->name())
                          : QString();
    }
    QString operator()(const SaveFailed& failed) const {
        return u"Could not save library: "_s + QString::fromStdString(failed.reason);
    }
    QString operator()(const FolderScanStarted& started) const {
        return u"Scanning %1…"_s.arg(QString::fromUtf8(started.folder.name()));
    }
    QString operator()(const FolderScanProgress& progress) const {
        return u"Scanning %1…"_s.arg(counted(progress.found, u"photo"_s));
    }
    QString operator()(const ImportSummary& summary) const {
        return counted(summary.scanned, u"photo"_s) + u" scanned"_s +
               part(summary.unreadable, u"unreadable"_s) + (summary.stopped ? u" · stopped"_s : QString());
    }
    QString operator()(const FolderRemoved&) const { return u"Removed from library · Files unchanged"_s; }
    QString operator()(const Stopping&) const { return u"Stopping…"_s; }
    QString operator()(const AvailabilitySummary& summary) const {
        return u"%1 available · %2 unavailable"_s.arg(summary.available).arg(summary.unavailable);
    }
    QString operator()(const MarkSummary& summary) const {
        return number(summary.marked) + u" marked"_s + part(summary.unavailable, u"unavailable"_s);
    }
    QString operator()(const PhotoRenamed& renamed) const {
        return u"Renamed to "_s + QString::fromUtf8(renamed.photo.url.name());
    }
    QString operator()(const MatchStarted&) const { return u"Analyzing photos…"_s; }
    QString operator()(const MatchProgress& progress) const { return QString::fromStdString(progress.text); }
    QString operator()(const MatchSummary& summary) const {
        const auto kind = summary.method == SimilarityMethod::exact            ? u"exact-copy group"_s
                          : summary.method == SimilarityMethod::nearDuplicates ? u"near-duplicate group"_s
                                                                               : u"visual group"_s;
        return counted(summary.groups, kind) + part(summary.unreadable, u"unreadable"_s) +
               part(summary.lowDetail, u"low-detail skipped"_s) + part(summary.failures.size(), u"failed"_s);
    }
    QString operator()(const StorageProblem& problem) const { return QString::fromStdString(problem.line); }
    QString operator()(const DocumentProblem& problem) const { return QString::fromStdString(problem.line); }
    QString operator()(const MatchCancelled&) const { return u"Scan cancelled"_s; }
    QString operator()(const MatchFailed& failed) const {
        return u"Similarity scan failed: "_s + QString::fromStdString(failed.reason);
    }
};

} // namespace

QString statusText(const Report& report) {
    return std::visit(Text(), report);
}

QString noticeText(const Report& report) {
    // What happens once and concerns files beside the library would be gone from the status line unread.
    const bool lasting =
        std::holds_alternative<DocumentsKept>(report) || std::holds_alternative<RestoreFailed>(report) ||
        std::holds_alternative<StorageProblem>(report) || std::holds_alternative<DocumentProblem>(report);
    return lasting ? statusText(report) : QString();
}

} // namespace lumisort::review
