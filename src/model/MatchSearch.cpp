#include "model/MatchSearch.h"

#include <QPointer>
#include <algorithm>
#include <utility>

namespace lumisort::model {

using library::Photo;
using similarity::SimilarityGroup;

/// What a scan returns.
struct MatchSearch::Found {
    MatchSummary summary;
    Groups groups;
    std::string storageProblem;
};

namespace {

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
                         const TaskRunner& runner, MatchEngine engine)
    : library_(library), availability_(availability), task_(task), reports_(reports), runner_(runner),
      engine_(std::move(engine)) {
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
    auto job = [engine = engine_, report, stop, all = library_.state().sharedPhotos(),
                rows = library_.state().readableRows(), method = method_, level = level_, caches = caches_] {
        std::vector<Photo> photos;
        photos.reserve(rows.size());
        for (const PhotoRow row : rows) photos.push_back((*all)[row]);
        auto result = engine(
            photos, method, level, *caches,
            [&](double fraction, std::string_view text) { report(fraction, std::string(text)); }, stop);
        // Here, not on the main thread: freeing the entries of a large library takes a while.
        if (method == SimilarityMethod::nearDuplicates)
            caches->fingerprints = std::move(result.caches.fingerprints);
        if (method == SimilarityMethod::visual) caches->prints = std::move(result.caches.prints);
        return Found{.summary = {.method = method,
                                 .groups = result.groups.size(),
                                 .unreadable = result.unreadable,
                                 .lowDetail = result.lowDetail,
                                 .failures = std::move(result.failures)},
                     .groups = std::move(result.groups),
                     .storageProblem = std::move(result.storageProblem)};
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
    if (std::exchange(storageProblem_, found->storageProblem) != found->storageProblem &&
        !storageProblem_.empty())
        reports_.add(StorageProblem{storageProblem_});
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
