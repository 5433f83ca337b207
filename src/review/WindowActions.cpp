#include "review/WindowActions.h"

#include "platform/images/RawExtensions.h"
#include "review/marks/MarkActions.h"

#include <algorithm>

namespace lumisort::review {

using library::Photo;
using model::LibraryModel;

namespace {

QString busyReason(const LibraryModel& model) {
    return model.task().busy() ? QStringLiteral("Please wait for the current task to finish.") : QString();
}

bool canBeFilm(const LibraryModel& model, const Photo& photo) {
    return images::hasRawExtension(photo.url.name()) && model.library().isReadable(photo);
}

std::vector<Photo> pickedForFilm(const LibraryModel& model) {
    auto photos = model.selection().picked();
    std::erase_if(photos, [&](const Photo& photo) { return !canBeFilm(model, photo); });
    return photos;
}

} // namespace

QString filmReason(const LibraryModel& model, const Photo& photo) {
    return canBeFilm(model, photo) ? QString() : QStringLiteral("Select a RAW photo for Film");
}

WindowActions::WindowActions(LibraryModel& model, WindowState& window, MarkHistory& marks)
    : ActionSet(Scope::grid) {
    const auto busy = [&model] { return busyReason(model); };
    const auto busyOrEmpty = [&model] {
        if (model.task().busy()) return busyReason(model);
        return model.library().availableCount() == 0 ? QStringLiteral("No photo is available.") : QString();
    };
    const auto nonePicked = [&model] {
        return model.selection().selected().empty() ? QStringLiteral("Select photos first.") : QString();
    };

    add(AddFolder, [&window] { window.chooseFolder(); }, busy);
    add(
        Organize, [&window] { window.organize(); },
        [&model, busyOrEmpty] {
            const auto reason = busyOrEmpty();
            if (!reason.isEmpty() || model.library().hasPhotosToOrganize()) return reason;
            return QStringLiteral("Every available photo is marked Skip.");
        });
    add(FindMatches, [&model] { model.matches().find(); }, busyOrEmpty);
    add(
        Stop,
        [&model] { model.folderImport().running() ? model.folderImport().stop() : model.matches().stop(); },
        [&model] {
            return model.matches().running() || model.folderImport().running()
                       ? QString()
                       : QStringLiteral("No scan is running.");
        });

    addMarkActions(*this, marks, [&model] { return model.selection().picked(); }, nonePicked);
    addUndoActions(*this, marks);
    add(ClearChoice, [&model] { model.selection().clear(); }, nonePicked);

    add(
        Details, [&window] { window.showDetails(); },
        [&model] {
            return model.selection().selected().empty() ? QStringLiteral("Select a photo first.") : QString();
        });
    add(
        Compare, [&window] { window.compare(); },
        [&model] {
            return model.selection().selected().size() == 2 ? QString()
                                                            : QStringLiteral("Select exactly two photos.");
        });
    add(
        Film,
        [&model, &window] {
            if (const auto photos = pickedForFilm(model); photos.size() == 1) window.editFilm(photos.front());
        },
        [&model] {
            const auto& picked = model.selection().selected();
            const auto photo = picked.size() == 1 ? model.library().photo(*picked.begin()) : std::nullopt;
            return photo ? filmReason(model, *photo) : QStringLiteral("Select a RAW photo for Film");
        });
    const auto noRawPicked = [&model] {
        return pickedForFilm(model).empty() ? QStringLiteral("Select RAW photos for Film") : QString();
    };
    add(ExportFilm, [&model, &window] { window.exportFilm(pickedForFilm(model)); }, noRawPicked);
    add(PasteFilm, [&model, &window] { window.pasteFilm(pickedForFilm(model)); }, noRawPicked);
    // The view carries these out.
    add(Search, [] {});
    add(Settings, [] {});

    connect(&model.task(), &model::ExclusiveTask::busyChanged, this, &ActionSet::refresh);
    connect(&model.folderImport(), &model::FolderImport::runningChanged, this, &ActionSet::refresh);
    connect(&model.library(), &model::Library::countsChanged, this, &ActionSet::refresh);
    connect(&model.selection(), &model::Selection::changed, this, &ActionSet::refresh);
    connect(&model.matches(), &model::MatchSearch::changed, this, &ActionSet::refresh);
}

} // namespace lumisort::review
