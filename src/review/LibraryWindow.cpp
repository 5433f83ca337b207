#include "review/LibraryWindow.h"

#include "review/StatusText.h"

#include <algorithm>
#include <utility>

namespace lumisort::review {

using files::FileUrl;
using library::Photo;
using model::LibraryModel;
using model::Section;

namespace {

std::optional<FileUrl> fileUrl(const QString& url) {
    return FileUrl::fromString(url.toStdString());
}

} // namespace

LibraryWindow::LibraryWindow(LibraryModel& model, QObject* parent)
    : QObject(parent), model_(model), state_(model), status_(model.task(), model.reports()), marks_(model),
      folders_(model, state_), groups_(model, state_), cursor_(model, state_, groups_),
      actions_(model, state_, marks_), photoActions_(model, state_, marks_) {
    connect(&state_, &WindowState::sectionChanged, this, [this] {
        Q_EMIT titleChanged();
        Q_EMIT pageChanged();
    });
    connect(&model.library(), &model::Library::countsChanged, this, &LibraryWindow::pageChanged);
    connect(&model.matches(), &model::MatchSearch::changed, this, [this] {
        Q_EMIT similarityChanged();
        Q_EMIT pageChanged();
    });
    connect(&state_, &WindowState::queryChanged, this, &LibraryWindow::pageChanged);
    connect(&model.task(), &model::ExclusiveTask::busyChanged, this, &LibraryWindow::pageChanged);
    connect(&model.selection(), &model::Selection::changed, this, [this] {
        ++selectionRevision_;
        Q_EMIT selectionChanged();
    });
    connect(&model.drives(), &model::Drives::changed, this, &LibraryWindow::deviceChanged);
    connect(&state_, &WindowState::folderWanted, this, [this](const std::optional<FileUrl>& startingAt) {
        Q_EMIT folderWanted(startingAt ? QString::fromUtf8(startingAt->string()) : QString());
    });
    connect(&model.folderImport(), &model::FolderImport::refused, this,
            [this](const std::vector<FileUrl>& urls) {
                QStringList names;
                for (const auto& url : urls) names << QString::fromUtf8(url.name());
                refuse(names);
            });
    connect(&model.reports(), &model::Reports::added, this, [this](const model::Report& report) {
        if (const auto notice = noticeText(report); !notice.isEmpty()) say(notice);
    });
}

QString LibraryWindow::title() const {
    switch (state_.section()) {
    case Section::folder: {
        const auto& folder = state_.folder();
        return folder ? QString::fromUtf8(folder->name()) : QString();
    }
    case Section::offline:
        return QStringLiteral("Unavailable");
    case Section::keep:
        return QStringLiteral("Import");
    case Section::cleanup:
        return QStringLiteral("Skip");
    case Section::similar:
        return QStringLiteral("Similar Photos");
    case Section::library:
        break;
    }
    return QStringLiteral("All Photos");
}

LibraryWindow::Page LibraryWindow::page() const {
    if (model_.library().photos().empty()) return Welcome;
    if (state_.section() != Section::similar) return state_.photos().rows().empty() ? Empty : Photos;
    if (model_.matches().running()) return Scanning;
    if (!model_.matches().complete()) return FindMatches;
    if (model_.matches().groups().empty()) return NoMatches;
    return groups_.groupCount() == 0 ? Empty : Groups;
}

QString LibraryWindow::emptyText() const {
    // Nothing counts as available before the first look at a folder, a moment after the start or an import.
    if (!model_.library().isLookedAt()) return {};
    const bool allAway = model_.library().availableCount() == 0 && model_.library().unavailableCount() > 0;
    return allAway && state_.section() != Section::offline
               ? QStringLiteral("Reconnect a drive to view photos.")
               : QStringLiteral("No matching photos");
}

bool LibraryWindow::isSelected(const QString& url) const {
    const auto file = fileUrl(url);
    return file && model_.selection().selected().contains(*file);
}

void LibraryWindow::showSection(WindowState::ShownSection section) {
    state_.setSection(static_cast<Section>(section));
    model_.selection().clear();
}

void LibraryWindow::showFolder(const QString& url) {
    if (const auto folder = fileUrl(url)) state_.showFolder(*folder);
    Q_EMIT titleChanged();
}

void LibraryWindow::setMethod(int method) {
    if (model_.task().busy() || method == this->method()) return;
    model_.matches().setMethod(static_cast<model::SimilarityMethod>(method));
    model_.matches().find();
}

void LibraryWindow::setLevel(int level) {
    if (model_.task().busy() || level == this->level()) return;
    model_.matches().setLevel(static_cast<similarity::SimilarityLevel>(level));
    if (model_.matches().complete()) model_.matches().find();
}

QStringList LibraryWindow::methods() {
    QStringList names;
    for (const auto method : model::allSimilarityMethods) names << QString::fromUtf8(storedName(method));
    return names;
}

QStringList LibraryWindow::levels() {
    QStringList names;
    for (const auto level : similarity::allSimilarityLevels) names << QString::fromUtf8(storedName(level));
    return names;
}

QString LibraryWindow::deviceName() const {
    const auto& pending = model_.drives().pending();
    return pending.empty() ? QString() : QString::fromUtf8(pending.front().name());
}

void LibraryWindow::browseDevice() {
    const auto pending = model_.drives().pending();
    if (model_.task().busy() || pending.empty()) return;
    if (model_.drives().accept(pending.front())) state_.chooseFolder(pending.front());
}

void LibraryWindow::dismissDevice() {
    if (const auto pending = model_.drives().pending(); !pending.empty())
        model_.drives().dismiss(pending.front());
}

void LibraryWindow::askToProtect(const QString& url) {
    if (std::exchange(folderToProtect_, url) != url) Q_EMIT folderToProtectChanged();
}

void LibraryWindow::answerProtection(bool protect) {
    if (const auto folder = fileUrl(folderToProtect_); protect && folder)
        model_.protection().set(*folder, true);
    askToProtect({});
}

void LibraryWindow::endProtection(const QString& url) {
    if (const auto folder = fileUrl(url)) model_.protection().set(*folder, false);
}

void LibraryWindow::askToRemove(const QString& url) {
    if (std::exchange(folderToRemove_, url) != url) Q_EMIT folderToRemoveChanged();
}

void LibraryWindow::answerRemoval(bool remove) {
    if (const auto folder = fileUrl(folderToRemove_); remove && folder) model_.removeFolder(*folder);
    askToRemove({});
}

void LibraryWindow::addFolders(const QList<QUrl>& urls) {
    std::vector<FileUrl> files;
    QStringList others;
    for (const auto& url : urls) {
        // As it is written: decoded to text, a name that is no UTF-8 would be another one.
        if (auto file = FileUrl::fromString(url.toEncoded().toStdString()))
            files.push_back(*std::move(file));
        else
            others << url.toDisplayString();
    }
    say({});
    refuse(others);
    model_.folderImport().importFolders(std::move(files));
}

void LibraryWindow::refuse(const QStringList& names) {
    if (names.isEmpty()) return;
    const auto all = names.join(QStringLiteral(", "));
    say(notice_.isEmpty() ? QStringLiteral("Only folders can be added: ") + all
                          : notice_ + QStringLiteral(", ") + all);
}

void LibraryWindow::say(const QString& notice, std::function<void()> undo) {
    undoNotice_ = std::move(undo);
    notice_ = notice;
    Q_EMIT noticeChanged();
}

void LibraryWindow::undoNotice() {
    const auto undo = std::exchange(undoNotice_, nullptr);
    dismissNotice();
    if (undo) undo();
}

} // namespace lumisort::review
