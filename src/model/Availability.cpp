#include "model/Availability.h"

#include "library/LibrarySurvey.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace lumisort::model {

Availability::Availability(Library& library, Reports& reports, const TaskRunner& runner,
                           files::FileSystem& system)
    : library_(library), reports_(reports), runner_(runner), system_(system) {}

Availability::~Availability() {
    ended_.request_stop();
}

QFuture<void> Availability::refresh() {
    assertMainThread();
    if (!std::exchange(requested_, true)) {
        waiting_.emplace_back().start();
        latest_ = waiting_.back().future();
    }
    if (!looking_) look();
    return latest_;
}

QCoro::Task<> Availability::look() {
    looking_ = true;
    while (!waiting_.empty()) {
        auto answered = std::exchange(waiting_, {});
        requested_ = false;
        const auto revision = library_.revision();
        auto job = [&system = system_, folders = library_.folders(), photos = library_.state().sharedPhotos(),
                    stop = ended_.get_token()] { return library::survey(system, folders, *photos, stop); };
        auto survey = co_await runner_.run(std::move(job));
        if (revision != library_.revision()) {
            std::ranges::move(answered, std::back_inserter(waiting_));
            continue;
        }
        if (survey && library_.apply(*std::move(survey)))
            reports_.add(
                AvailabilitySummary{library_.state().readableCount(), library_.state().unavailableCount()});
        for (auto& promise : answered) promise.finish();
    }
    looking_ = false;
}

} // namespace lumisort::model
