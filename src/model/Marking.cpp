#include "model/Marking.h"

#include <ranges>
#include <utility>

namespace lumisort::model {

using files::FileUrl;
using library::FileStamp;

namespace {

std::vector<std::optional<FileStamp>> freshStamps(files::FileSystem& system,
                                                  const std::vector<FileUrl>& photos) {
    std::vector<std::optional<FileStamp>> stamps;
    stamps.reserve(photos.size());
    for (const auto& photo : photos) {
        try {
            stamps.emplace_back(FileStamp::read(system, photo));
        } catch (const files::FileError&) {
            stamps.emplace_back();
        }
    }
    return stamps;
}

} // namespace

Marking::Marking(Library& library, Reports& reports, const TaskRunner& runner, files::FileSystem& system)
    : library_(library), reports_(reports), runner_(runner), system_(system) {
    connect(&library, &Library::renamed, this, &Marking::follow);
}

QFuture<MarkSummary> Marking::mark(const std::vector<library::Photo>& photos,
                                   std::optional<library::ReviewDecision> decision,
                                   std::shared_ptr<StoredMarks> replaced) {
    Request request{.decision = decision, .replaced = std::move(replaced)};
    for (const auto& photo : photos) request.photos.push_back(photo.url);
    return photos.empty() ? QtFuture::makeReadyFuture(MarkSummary()) : add(std::move(request));
}

QFuture<MarkSummary> Marking::restore(std::shared_ptr<StoredMarks> marks) {
    return add({.restored = std::move(marks)});
}

QFuture<MarkSummary> Marking::add(Request request) {
    assertMainThread();
    request.done.start();
    auto done = request.done.future();
    pending_ = QFuture<void>(done);
    requests_.push_back(std::move(request));
    if (!serving_) serve();
    return done;
}

QCoro::Task<> Marking::serve() {
    serving_ = true;
    while (!requests_.empty()) {
        Stamps stamps;
        if (!requests_.front().restored) do {
                renamed_ = false;
                auto job = [&system = system_, photos = requests_.front().photos] {
                    return freshStamps(system, photos);
                };
                auto read = co_await runner_.run(std::move(job));
                stamps = read ? *std::move(read) : Stamps(requests_.front().photos.size());
            } while (renamed_);
        auto request = std::move(requests_.front());
        requests_.pop_front();
        const auto summary = request.restored ? applyRestored(*request.restored) : apply(request, stamps);
        library_.marksApplied();
        reports_.add(summary);
        request.done.addResult(summary);
        request.done.finish();
    }
    serving_ = false;
}

MarkSummary Marking::apply(const Request& request, const Stamps& stamps) {
    MarkSummary summary;
    for (std::size_t i = 0; i < request.photos.size(); ++i) {
        const auto row = library_.row(request.photos[i]);
        if (!row || !library_.state().isReadable(*row) || !stamps[i]) {
            ++summary.unavailable;
            continue;
        }
        if (request.replaced) request.replaced->push_back({request.photos[i], library_.state().mark(*row)});
        library_.mark(*row, request.decision, *stamps[i]);
        ++summary.marked;
    }
    return summary;
}

MarkSummary Marking::applyRestored(const StoredMarks& marks) {
    MarkSummary summary;
    // From the back: of a photo that was given twice the first entry is the oldest.
    for (const auto& [photo, mark] : marks | std::views::reverse) {
        if (const auto row = library_.row(photo)) {
            library_.restoreMark(*row, mark);
            ++summary.marked;
        } else {
            ++summary.unavailable;
        }
    }
    return summary;
}

void Marking::follow(const FileUrl& before, const library::Photo& after) {
    for (auto& request : requests_) {
        for (auto& photo : request.photos)
            if (photo == before) {
                photo = after.url;
                renamed_ = true;
            }
        if (!request.restored) continue;
        for (auto& mark : *request.restored)
            if (mark.photo == before) mark.photo = after.url;
    }
}

} // namespace lumisort::model
