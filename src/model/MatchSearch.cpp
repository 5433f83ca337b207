#include "model/MatchSearch.h"

#include <QPointer>
#include <algorithm>
#include <utility>

namespace lumisort::model {

using library::Photo;
using similarity::SimilarityGroup;

/// What a scan returns; the fields of the other methods are empty.
struct MatchSearch::Found {
    MatchSummary summary;
    Groups groups;
    similarity::FingerprintCache fingerprints;
    similarity::FeaturePrintCache prints;
};

namespace {

constexpr int scanWorkers = 4;

std::string nearProgressText(std::size_t completed, std::size_t total) {
    return completed == total
               ? "Grouping matches…"
               : "Analyzing " + std::to_string(completed) + " of " + std::to_string(total) + "…";
}

bool isCancellation(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const tasks::Cancelled&) {
        return true;
    } catch (...) {
        return false;
    }
}

} // namespace

MatchSearch::MatchSearch(Library& library, Availability& availability, ExclusiveTask& task, Reports& reports,
                         const TaskRunner& runner, SimilarityEngines engines)
    : library_(library), availability_(availability), task_(task), reports_(reports), runner_(runner),
      engines_(std::move(engines)) {
    connect(&library, &Library::filesChanged, this, &MatchSearch::dropOutdated);
    connect(&library, &Library::folderRemoved, this, &MatchSearch::dropOutdated);
    connect(&library, &Library::renamed, this, &MatchSearch::follow);
}

MatchSearch::~MatchSearch() {
    stop_.request_stop();
}

void MatchSearch::setMethod(SimilarityMethod method) {
    assertMainThread();
    if (std::exchange(method_, method) == method) return;
    dropGroups();
}

void MatchSearch::setLevel(similarity::SimilarityLevel level) {
    assertMainThread();
    if (std::exchange(level_, level) != level) Q_EMIT changed();
}

QFuture<MatchOutcome> MatchSearch::find() {
    availability_.refresh();
    if (library_.availableCount() == 0) return {};
    auto hold = task_.begin();
    return hold ? futureOf(scan(*std::move(hold))) : QFuture<MatchOutcome>();
}

QCoro::Task<MatchOutcome> MatchSearch::scan(ExclusiveTask::Hold hold) {
    stop_ = std::stop_source();
    const auto stop = stop_.get_token();
    running_ = true;
    progress_ = 0;
    Q_EMIT progressChanged();
    dropGroups();
    Q_EMIT started();
    reports_.add(MatchStarted{});

    const auto report = [post = runner_.mainThread(), self = QPointer(this),
                         scan = ++scan_](double fraction, std::string text) {
        post([self, scan, fraction, text = std::move(text)] {
            if (self) self->showProgress(scan, fraction, text);
        });
    };
    auto job = [engines = engines_, report, stop, all = library_.state().sharedPhotos(),
                rows = library_.state().readableRows(), method = method_, level = level_,
                caches = std::shared_ptr<const Caches>(caches_)] {
        std::vector<Photo> photos;
        photos.reserve(rows.size());
        for (const PhotoRow row : rows) photos.push_back((*all)[row]);

        Found found{.summary = {.method = method}};
        if (method == SimilarityMethod::exact) {
            auto [copies, failed] = engines.exact(photos, stop);
            for (auto& group : copies) {
                const auto anchor = group.front();
                found.groups.push_back({.anchor = anchor, .photos = std::move(group)});
            }
            found.summary.unreadable = failed;
        } else if (method == SimilarityMethod::nearDuplicates) {
            const auto progress = [&report](std::size_t completed, std::size_t total) {
                report(static_cast<double>(completed) / static_cast<double>(std::max<std::size_t>(total, 1)),
                       nearProgressText(completed, total));
            };
            auto result = engines.near(photos, level, caches->fingerprints, scanWorkers, progress, stop);
            found.groups = std::move(result.groups);
            found.summary.unreadable = result.unreadable;
            found.summary.lowDetail = result.lowDetail;
            found.fingerprints = std::move(result.cache);
        } else {
            const auto progress = [&report](double fraction, std::string_view text) {
                report(fraction, std::string(text));
            };
            auto result = engines.visual(photos, level, caches->prints, scanWorkers, progress, stop);
            found.groups = std::move(result.groups);
            found.summary.failures = std::move(result.failures);
            found.prints = std::move(result.cache);
        }
        found.summary.groups = found.groups.size();
        return found;
    };
    auto found = co_await runner_.run(std::move(job));

    auto outcome = apply(std::move(found));
    running_ = false;
    {
        const ExclusiveTask::Hold ended(std::move(hold));
    }
    std::visit([this](const auto& each) { reports_.add(each); }, outcome);
    Q_EMIT changed();
    co_return outcome;
}

MatchOutcome MatchSearch::apply(Outcome<Found> found) {
    if (!found) {
        if (isCancellation(found.error())) return MatchCancelled();
        return MatchFailed{describe(found.error())};
    }
    groups_ = std::make_shared<const Groups>(std::move(found->groups));
    if (found->summary.method == SimilarityMethod::nearDuplicates)
        caches_->fingerprints = std::move(found->fingerprints);
    if (found->summary.method == SimilarityMethod::visual) caches_->prints = std::move(found->prints);
    for (const auto& line : found->summary.failures) failures_ << QString::fromUtf8(line);
    complete_ = true;
    return std::move(found->summary);
}

void MatchSearch::stop() {
    assertMainThread();
    if (!running_) return;
    stop_.request_stop();
    reports_.add(Stopping{});
}

void MatchSearch::showProgress(std::uint64_t scan, double fraction, const std::string& text) {
    if (!running_ || scan != scan_ || stop_.stop_requested()) return;
    progress_ = fraction;
    Q_EMIT progressChanged();
    reports_.add(MatchProgress{text});
}

void MatchSearch::dropGroups() {
    groups_ = std::make_shared<const Groups>();
    complete_ = false;
    failures_.clear();
    Q_EMIT changed();
}

void MatchSearch::dropOutdated() {
    stop();
    dropGroups();
}

void MatchSearch::follow(const files::FileUrl& before, const Photo& after) {
    // No scan runs: a rename waits for the exclusive task. So the caches are this object's alone.
    caches_->fingerprints.erase(before);
    caches_->fingerprints.erase(after.url);
    caches_->prints.erase(before);
    caches_->prints.erase(after.url);
    const auto isIn = [&](const SimilarityGroup& group) {
        return std::ranges::find(group.photos, before, &Photo::url) != group.photos.end();
    };
    if (std::ranges::none_of(*groups_, isIn)) return;
    auto groups = *groups_;
    for (auto& group : groups) {
        if (group.anchor.url == before) group.anchor = after;
        std::ranges::replace(group.photos, before, after, &Photo::url);
        if (auto distance = group.distances.extract(before)) {
            distance.key() = after.url;
            group.distances.insert(std::move(distance));
        }
    }
    groups_ = std::make_shared<const Groups>(std::move(groups));
    Q_EMIT renamed(before, after);
}

} // namespace lumisort::model
