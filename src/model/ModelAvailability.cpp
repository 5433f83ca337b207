// What can be reached right now: folders, photos, drives.

#include "model/LibraryModel.h"

namespace lumisort::model {

void LibraryModel::updateDevices() {
    auto devices = devices_;
    devices.update(library::DeviceDiscovery::mountedDevices(with_.volumes()), folders());
    if (devices != devices_) {
        devices_ = std::move(devices);
        Q_EMIT devicesChanged();
    }
    refreshAvailability();
}

void LibraryModel::refreshAvailability() {
    if (std::exchange(refreshRequested_, true)) return; // a pass that has not begun yet will do
    if (!availabilityTask_.isFinished()) return;        // the one that runs looks again when it is done
    auto done = std::make_shared<QPromise<void>>();
    done->start();
    availabilityTask_ = done->future();
    inspect(done);
}

void LibraryModel::inspect(const std::shared_ptr<QPromise<void>>& done) {
    refreshRequested_ = false;
    runner_.start(
        this,
        [&system = with_.system, folders = folders(), photos = state_.sharedPhotos(),
         stop = ended_.get_token()] { return library::survey(system, folders, *photos, stop); },
        [this, done, revision = libraryRevision_](Outcome<library::LibrarySurvey> survey) {
            if (revision != libraryRevision_)
                refreshRequested_ = true; // of a library that is no more
            else if (survey && !state_.agreesWith(*survey))
                applySurvey(*std::move(survey));
            if (refreshRequested_)
                inspect(done);
            else
                done->finish();
        });
}

void LibraryModel::applySurvey(library::LibrarySurvey survey) {
    state_.apply(std::move(survey));
    derivedChanged();
    visible_.touchAll();
    auto selected = selected_;
    std::erase_if(selected, [this](const files::FileUrl& url) {
        const auto row = state_.find(url);
        return !row || !state_.isReadable(*row);
    });
    if (selected != selected_) setSelected(std::move(selected));
    if (selected_.size() != 2) setCompare(false);
    if (similarityRunning_) stopSimilarity();
    invalidateSimilarity();
    ++thumbnailRevision_;
    Q_EMIT thumbnailRevisionChanged();
    if (!busy_)
        say(QStringLiteral("%1 available · %2 unavailable").arg(availableCount()).arg(unavailableCount()));
}

} // namespace lumisort::model
