#include "model/LibraryModel.h"

#include "library/OrganizeSelection.h"
#include "library/RenamePhoto.h"

#include <QTimer>
#include <utility>

namespace lumisort::model {

using files::FileUrl;
using library::Photo;

void ModelDependencies::afterOnTimer(std::chrono::milliseconds delay, QObject* context,
                                     std::function<void()> function) {
    QTimer::singleShot(delay, Qt::PreciseTimer, context, std::move(function));
}

LibraryModel::LibraryModel(const FileUrl& document, std::optional<library::LibraryContents> contents,
                           ModelDependencies deps)
    : deps_(std::move(deps)), runner_(deps_.background),
      document_(library_, task_, reports_, runner_, deps_, document),
      availability_(library_, reports_, runner_, deps_.system),
      drives_(library_, availability_, deps_.volumes),
      folderImport_(library_, task_, reports_, runner_, deps_),
      marking_(library_, reports_, runner_, deps_.system),
      protection_(reports_, runner_, besideWriter_, deps_.system, document), selection_(library_),
      matches_(library_, availability_, task_, reports_, runner_, deps_.findMatches) {
    connect(&matches_, &MatchSearch::started, &selection_, &Selection::clear);
    connect(&library_, &Library::marksChanged, &document_, &LibraryDocument::save);
    connect(&folderImport_, &FolderImport::imported, this, [this] {
        availability_.refresh();
        document_.save();
    });
    if (!contents) {
        loading_ = futureOf(load());
        return;
    }
    LibraryState state(*std::move(contents));
    SearchNames names;
    names.update(state.sharedPhotos());
    library_.restore(std::move(state), std::move(names));
    availability_.refresh();
}

QCoro::Task<LoadOutcome> LibraryModel::load() {
    const auto read = document_.load();
    const auto rules = protection_.load();
    co_await runner_.finished(read);
    co_await runner_.finished(rules);
    availability_.refresh();
    co_return read.result();
}

void LibraryModel::removeFolder(const FileUrl& folder) {
    assertMainThread();
    if (task_.busy()) return;
    library_.remove(folder);
    if (protection_.folders().protecting(folder)) protection_.set(folder, false);
    availability_.refresh();
    reports_.add(FolderRemoved{});
    document_.save();
}

std::expected<Photo, std::string> LibraryModel::rename(const Photo& photo, std::string_view stem) {
    assertMainThread();
    const auto row = library_.row(photo.url);
    if (task_.busy() || !row) return std::unexpected("Please wait for the current task to finish.");
    try {
        const auto& before = library_.photos()[*row];
        auto renamed = library::renamePhoto(deps_.system, before, stem);
        if (renamed.url == before.url) return renamed;
        library_.rename(*row, renamed);
        availability_.refresh();
        reports_.add(PhotoRenamed{renamed});
        document_.save();
        return renamed;
    } catch (const std::exception& refused) {
        return std::unexpected(refused.what());
    }
}

QFuture<std::vector<Photo>> LibraryModel::prepareToOrganize() {
    auto hold = task_.begin();
    return hold ? futureOf(toOrganize(*std::move(hold))) : QFuture<std::vector<Photo>>();
}

QCoro::Task<std::vector<Photo>> LibraryModel::toOrganize(ExclusiveTask::Hold hold) {
    const auto marks = marking_.pending();
    co_await runner_.finished(marks);
    const auto look = availability_.refresh();
    co_await runner_.finished(look);
    const ExclusiveTask::Hold ended(std::move(hold));
    co_return library::photosToOrganize(library_.availablePhotos(), library_.reviewMarks());
}

QFuture<SaveOutcome> LibraryModel::flush() {
    return futureOf(flushed());
}

QCoro::Task<SaveOutcome> LibraryModel::flushed() {
    co_await runner_.finished(loading_);
    const auto marks = marking_.pending();
    co_await runner_.finished(marks);
    const auto write = document_.flush();
    co_await runner_.finished(write);
    co_return write.result();
}

} // namespace lumisort::model
