// Marking, strictly in the order in which it was asked for.

#include "model/LibraryModel.h"

namespace lumisort::model {

using library::FingerprintStamp;
using library::Photo;

namespace {

using Stamps = std::vector<std::optional<FingerprintStamp>>;

Stamps freshStamps(files::FileSystem& system, const std::vector<Photo>& photos) {
    Stamps stamps;
    stamps.reserve(photos.size());
    for (const auto& photo : photos) {
        try {
            stamps.emplace_back(FingerprintStamp::read(system, photo.url));
        } catch (const files::FileError&) {
            stamps.emplace_back();
        }
    }
    return stamps;
}

} // namespace

void LibraryModel::mark(const std::vector<Photo>& photos, std::optional<library::ReviewDecision> decision) {
    markQueue_.push_back({photos, decision});
    if (!markTask_.isFinished()) return;
    auto done = std::make_shared<QPromise<void>>();
    done->start();
    markTask_ = done->future();
    nextMark(done);
}

void LibraryModel::nextMark(const std::shared_ptr<QPromise<void>>& done) {
    if (markQueue_.empty()) {
        done->finish();
        return;
    }
    auto request = std::make_shared<const MarkRequest>(std::move(markQueue_.front()));
    markQueue_.pop_front();
    runner_.start(
        this, [&system = with_.system, request] { return freshStamps(system, request->photos); },
        [this, done, request](Outcome<Stamps> stamps) {
            applyMark(*request, stamps ? *stamps : Stamps(request->photos.size()));
            nextMark(done);
        });
}

void LibraryModel::applyMark(const MarkRequest& request, const Stamps& stamps) {
    std::size_t unavailable = 0;
    for (std::size_t i = 0; i < request.photos.size(); ++i) {
        const auto row = state_.find(request.photos[i].url);
        if (!row || !state_.isReadable(*row) || !stamps[i]) {
            ++unavailable;
            continue;
        }
        state_.mark(*row, request.decision, *stamps[i]);
        visible_.touch(*row);
    }
    const auto section = sectionNamed(section_.toStdString());
    if (section == Section::keep || section == Section::cleanup) updateVisible();
    Q_EMIT countsChanged();
    auto text = QStringLiteral("%1 marked").arg(request.photos.size() - unavailable);
    if (unavailable > 0) text += QStringLiteral(" · %1 unavailable").arg(unavailable);
    say(text);
    saveSession();
}

} // namespace lumisort::model
