#include "review/WindowCommands.h"

#include "model/Utf8.h"
#include "platform/images/RawExtensions.h"

#include <algorithm>

namespace lumisort::review {

using library::ReviewDecision;
using model::LibraryModel;

namespace {

QString never() { return {}; }

bool isRaw(const library::Photo& photo) {
    const auto lower = model::fromUtf8(photo.url.extension()).toLower();
    return std::ranges::binary_search(images::rawExtensions, lower.toStdString());
}

} // namespace

WindowCommands::WindowCommands(LibraryModel& model, MarkHistory& marks, QObject* parent)
    : QObject(parent), model_(model) {
    const auto busy = [&model] {
        return model.busy() ? QStringLiteral("Please wait for the current task to finish.") : QString();
    };
    const auto nonePicked = [&model] {
        return model.selected().empty() ? QStringLiteral("Select photos first.") : QString();
    };
    const auto markAs = [&model, &marks](MarkHistory::Decision decision) {
        return [&model, &marks, decision] { marks.mark(model.picked(), decision); };
    };

    addFolder = add("Add Folder", "folder-new", "Ctrl+O", busy, [&model] { model.chooseFolder(); });
    organize = add(
        "Import", "document-import", "Ctrl+Shift+I",
        [&model, busy] {
            if (model.busy()) return busy();
            if (model.availableCount() == 0) return QStringLiteral("No photo is available.");
            return model.hasEligiblePhotos() ? QString()
                                             : QStringLiteral("Every available photo is marked Skip.");
        },
        [&model] { model.beginOrganize(); });
    findMatches = add(
        "Find Matches", "edit-duplicate", "Ctrl+M",
        [&model, busy] {
            if (model.busy()) return busy();
            return model.availableCount() == 0 ? QStringLiteral("No photo is available.") : QString();
        },
        [&model] { model.findSimilar(); });
    stop = add(
        "Cancel", "", "",
        [&model] {
            return model.similarityRunning() || model.importRunning() ? QString()
                                                                      : QStringLiteral("No scan is running.");
        },
        [&model] { model.importRunning() ? model.stopImport() : model.stopSimilarity(); });

    keep = add("Import", "checkmark", "Ctrl+K", nonePicked, markAs(ReviewDecision::keep));
    skip = add("Skip", "flag", "Ctrl+D", nonePicked, markAs(ReviewDecision::cleanup));
    clearMark = add("Clear Mark", "", "Ctrl+U", nonePicked, markAs(std::nullopt));
    clearChoice = add("Clear Choice", "window-close", "Ctrl+Shift+A", nonePicked,
                      [&model] { model.selectAll({}, std::nullopt); });
    undo = add(
        "Undo", "edit-undo", "Ctrl+Z",
        [&marks] { return marks.canUndo() ? QString() : QStringLiteral("Nothing to undo."); },
        [&marks] { marks.undo(); });
    redo = add(
        "Redo", "edit-redo", "Ctrl+Shift+Z",
        [&marks] { return marks.canRedo() ? QString() : QStringLiteral("Nothing to redo."); },
        [&marks] { marks.redo(); });

    details = add(
        "Show Details", "documentinfo", "Ctrl+I",
        [&model] {
            return model.selected().empty() ? QStringLiteral("Select a photo first.") : QString();
        },
        [&model] { model.showDetails(); });
    compare = add(
        "Compare", "view-split-left-right", "Ctrl+E",
        [&model] {
            return model.selected().size() == 2 ? QString() : QStringLiteral("Select exactly two photos.");
        },
        [&model] { model.setCompare(true); });
    film = add(
        "Film", "view-filter", "",
        [&model, busy] {
            const auto& picked = model.selected();
            const auto photo = picked.size() == 1 ? model.photo(*picked.begin()) : std::nullopt;
            if (!photo || !isRaw(*photo) || !model.isReadable(*photo))
                return QStringLiteral("Select a RAW photo for Film");
            return model.busy() ? busy() : QStringLiteral("The film editor is not part of this version.");
        },
        [] {});
    search = add("Search", "edit-find", "Ctrl+F", never, [] {});

    const auto follow = [this] { refresh(); };
    connect(&model, &LibraryModel::busyChanged, this, follow);
    connect(&model, &LibraryModel::countsChanged, this, follow);
    connect(&model, &LibraryModel::selectionChanged, this, follow);
    connect(&model, &LibraryModel::similarityChanged, this, follow);
    connect(&marks, &MarkHistory::changed, this, follow);
    refresh();
}

ui::Command* WindowCommands::add(const char* text, const char* icon, const char* keys,
                                 std::function<QString()> reason, std::function<void()> action) {
    auto* command = new ui::Command(QString::fromUtf8(text), QString::fromUtf8(icon),
                                    QString::fromUtf8(keys), this); // owned by this
    connect(command, &ui::Command::triggered, this, std::move(action));
    all_.push_back(command);
    reasons_.push_back(std::move(reason));
    return command;
}

void WindowCommands::refresh() {
    for (qsizetype i = 0; i < all_.size(); ++i)
        all_[i]->setReason(reasons_[static_cast<std::size_t>(i)]());
}

} // namespace lumisort::review
