#include "review/LibraryWindow.h"

#include "model/Utf8.h"

#include <algorithm>
#include <utility>

namespace lumisort::review {

using files::FileUrl;
using library::Photo;
using library::ReviewDecision;
using model::LibraryModel;
using model::Section;

namespace {

std::optional<FileUrl> fileUrl(const QString& url) {
    return FileUrl::fromString(url.toStdString());
}

Section sectionOf(const LibraryModel& model) {
    return model::sectionNamed(model.section().toStdString());
}

} // namespace

LibraryWindow::LibraryWindow(LibraryModel& model, QObject* parent)
    : QObject(parent), model_(model), marks_(model), folders_(model), groups_(model), cursor_(model, groups_),
      commands_(model, marks_, nullptr) {
    connect(&model, &LibraryModel::sectionChanged, this, [this] {
        Q_EMIT titleChanged();
        Q_EMIT pageChanged();
    });
    connect(&model, &LibraryModel::countsChanged, this, [this] {
        ++marksRevision_;
        Q_EMIT marksChanged();
        Q_EMIT pageChanged();
    });
    connect(&model, &LibraryModel::similarityChanged, this, [this] {
        Q_EMIT similarityChanged();
        Q_EMIT pageChanged();
    });
    connect(&model, &LibraryModel::queryChanged, this, &LibraryWindow::pageChanged);
    connect(&model, &LibraryModel::busyChanged, this, &LibraryWindow::pageChanged);
    connect(&model, &LibraryModel::selectionChanged, this, [this] {
        ++selectionRevision_;
        Q_EMIT selectionChanged();
    });
    connect(&model, &LibraryModel::devicesChanged, this, &LibraryWindow::deviceChanged);
    connect(&model, &LibraryModel::folderWanted, this, [this](const std::optional<FileUrl>& startingAt) {
        Q_EMIT folderWanted(startingAt ? model::fromUtf8(startingAt->string()) : QString());
    });
    connect(&model, &LibraryModel::foldersRefused, this, [this](const std::vector<FileUrl>& urls) {
        QStringList names;
        for (const auto& url : urls) names << model::fromUtf8(url.name());
        refuse(names);
    });
}

QString LibraryWindow::title() const {
    switch (sectionOf(model_)) {
    case Section::folder: {
        const auto& folder = model_.selectedFolder();
        return folder ? model::fromUtf8(folder->name()) : QString();
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

QString LibraryWindow::page() const {
    if (model_.photos().empty()) return QStringLiteral("welcome");
    if (sectionOf(model_) != Section::similar)
        return model_.visiblePhotos().rows().empty() ? QStringLiteral("empty") : QStringLiteral("photos");
    if (model_.similarityRunning()) return QStringLiteral("scanning");
    if (!model_.similarityComplete()) return QStringLiteral("findMatches");
    if (model_.similarGroups().empty()) return QStringLiteral("noMatches");
    return groups_.groupCount() == 0 ? QStringLiteral("empty") : QStringLiteral("groups");
}

QString LibraryWindow::emptyText() const {
    // Nothing counts as available before the first look at a folder, a moment after the start or an import.
    if (!std::ranges::all_of(model_.folders(), [this](const FileUrl& folder) {
            return model_.folderState(folder).has_value();
        }))
        return {};
    const bool allAway = model_.availableCount() == 0 && model_.unavailableCount() > 0;
    return allAway && sectionOf(model_) != Section::offline
               ? QStringLiteral("Reconnect a drive to view photos.")
               : QStringLiteral("No matching photos");
}

std::optional<Photo> LibraryWindow::photoOf(const QString& url) const {
    const auto file = fileUrl(url);
    return file ? model_.photo(*file) : std::nullopt;
}

bool LibraryWindow::isSelected(const QString& url) const {
    const auto file = fileUrl(url);
    return file && model_.selected().contains(*file);
}

bool LibraryWindow::isReadable(const QString& url) const {
    const auto photo = photoOf(url);
    return photo && model_.isReadable(*photo);
}

QString LibraryWindow::decision(const QString& url) const {
    const auto photo = photoOf(url);
    const auto decision = photo ? model_.decision(*photo) : std::nullopt;
    return decision ? model::fromUtf8(rawValue(*decision)) : QString();
}

void LibraryWindow::showSection(const QString& section) {
    model_.setSection(section);
    model_.selectAll({}, std::nullopt);
}

void LibraryWindow::showFolder(const QString& url) {
    if (const auto folder = fileUrl(url)) model_.showFolder(*folder);
    Q_EMIT titleChanged();
}

void LibraryWindow::showDetails(const QString& url) {
    if (const auto photo = photoOf(url)) model_.showDetails(photo);
}

void LibraryWindow::mark(const QString& url, const QString& decision) {
    if (const auto photo = photoOf(url))
        marks_.mark({*photo}, library::reviewDecisionFromRawValue(decision.toStdString()));
}

void LibraryWindow::setMethod(int method) {
    if (model_.busy() || method == this->method()) return;
    model_.setSimilarityMethod(static_cast<model::SimilarityMethod>(method));
    model_.findSimilar();
}

void LibraryWindow::setLevel(int level) {
    if (model_.busy() || level == this->level()) return;
    model_.setSimilarityLevel(static_cast<similarity::SimilarityLevel>(level));
    if (model_.similarityComplete()) model_.findSimilar();
}

QStringList LibraryWindow::methods() {
    QStringList names;
    for (const auto method : model::allSimilarityMethods) names << model::fromUtf8(rawValue(method));
    return names;
}

QStringList LibraryWindow::levels() {
    QStringList names;
    for (const auto level : similarity::allSimilarityLevels) names << model::fromUtf8(rawValue(level));
    return names;
}

QString LibraryWindow::deviceName() const {
    const auto& pending = model_.devices().pending;
    return pending.empty() ? QString() : model::fromUtf8(pending.front().name());
}

void LibraryWindow::browseDevice() {
    if (const auto pending = model_.devices().pending; !pending.empty()) model_.browseDevice(pending.front());
}

void LibraryWindow::dismissDevice() {
    if (const auto pending = model_.devices().pending; !pending.empty())
        model_.dismissDevice(pending.front());
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
    model_.importFolders(std::move(files));
}

void LibraryWindow::refuse(const QStringList& names) {
    if (names.isEmpty()) return;
    const auto all = names.join(QStringLiteral(", "));
    say(notice_.isEmpty() ? QStringLiteral("Only folders can be added: ") + all
                          : notice_ + QStringLiteral(", ") + all);
}

void LibraryWindow::say(const QString& notice) {
    if (std::exchange(notice_, notice) != notice) Q_EMIT noticeChanged();
}

std::vector<Photo> LibraryWindow::comparedGroup() const {
    const auto picked = model_.picked();
    return picked.size() == 2 && sectionOf(model_) == Section::similar ? groups_.groupOf(picked[0], picked[1])
                                                                       : std::vector<Photo>{};
}

} // namespace lumisort::review
