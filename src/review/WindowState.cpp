#include "review/WindowState.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace lumisort::review {

using files::FileUrl;
using library::Photo;
using model::LibraryModel;
using model::Section;

WindowState::WindowState(LibraryModel& model) : model_(model), photos_(model.library()) {
    connect(&model.matches(), &model::MatchSearch::started, this, [this] { setSection(Section::similar); });
    connect(&model.folderImport(), &model::FolderImport::imported, this,
            [this] { setSection(Section::library); });
    connect(&model.library(), &model::Library::folderRemoved, this, [this](const FileUrl& folder) {
        if (folder_ != folder) return;
        folder_.reset();
        if (section_ == Section::folder) setSection(Section::library);
    });
}

void WindowState::update() {
    photos_.show({section_, folder_, query_.toStdString()});
}

void WindowState::setSection(Section section) {
    assertMainThread();
    if (std::exchange(section_, section) == section) return;
    update();
    Q_EMIT sectionChanged();
}

void WindowState::setQuery(const QString& query) {
    assertMainThread();
    if (std::exchange(query_, query) == query) return;
    update();
    Q_EMIT queryChanged();
}

void WindowState::showFolder(const FileUrl& folder) {
    folder_ = folder;
    section_ = Section::folder;
    update();
    Q_EMIT sectionChanged();
    model_.selection().clear();
}

void WindowState::chooseFolder(const std::optional<FileUrl>& startingAt) {
    if (!model_.task().busy()) Q_EMIT folderWanted(startingAt);
}

void WindowState::showDetails(const std::optional<Photo>& photo) {
    if (photo && !model_.selection().add(*photo)) return;
    if (model_.selection().detailPhoto()) Q_EMIT detailsWanted();
}

void WindowState::openFullscreen(const Photo& photo) {
    const auto& library = model_.library();
    if (!library.isReadable(photo)) return;
    std::vector<Photo> sequence;
    std::unordered_set<FileUrl> seen;
    const auto add = [&](const Photo& each) {
        if (library.isReadable(each) && seen.insert(each.url).second) sequence.push_back(each);
    };
    if (section_ == Section::similar) {
        for (const auto* group : groupsOnShow()) std::ranges::for_each(group->photos, add);
    } else {
        for (const auto row : photos_.rows()) add(library.photos()[row]);
    }
    const auto at = std::ranges::find(sequence, photo.url, &Photo::url);
    if (at == sequence.end()) return;
    Q_EMIT fullscreenWanted(sequence, static_cast<int>(at - sequence.begin()));
}

std::vector<const similarity::SimilarityGroup*> WindowState::groupsOnShow() const {
    const auto& groups = model_.matches().groups();
    std::vector<const similarity::SimilarityGroup*> shown;
    for (const auto index : model::visibleGroups(groups, query_.toStdString()))
        shown.push_back(&groups[index]);
    return shown;
}

void WindowState::compare() {
    const auto picked = model_.selection().picked();
    if (picked.size() != 2) return;
    std::vector<Photo> group;
    if (section_ == Section::similar)
        for (const auto* each : groupsOnShow()) {
            const auto holds = [&](const Photo& photo) {
                return std::ranges::find(each->photos, photo.url, &Photo::url) != each->photos.end();
            };
            if (!holds(picked[0]) || !holds(picked[1])) continue;
            group = each->photos;
            break;
        }
    Q_EMIT compareWanted(picked, group);
}

void WindowState::organize() {
    const auto prepared = model_.prepareToOrganize();
    model::whenFinished(prepared, this, [this, prepared] {
        if (prepared.isCanceled()) return;
        if (const auto photos = prepared.result(); !photos.empty()) Q_EMIT organizeWanted(photos);
    });
}

} // namespace lumisort::review
