#include "app/desktop/Pages.h"

#include "platform/images/RawExtensions.h"

#include <QGuiApplication>
#include <algorithm>
#include <optional>

namespace lumisort::app {

namespace {

void pick(Desktop& desktop, std::size_t count) {
    for (const auto& photo : desktop.model().library().availablePhotos()) {
        if (desktop.model().selection().selected().size() >= count) return;
        desktop.model().selection().toggle(photo);
    }
}

/// The first camera RAW that can be read; none in a library without.
std::optional<library::Photo> rawPhoto(Desktop& desktop) {
    for (const auto& photo : desktop.model().library().availablePhotos())
        if (images::hasRawExtension(photo.url.name())) return photo;
    return std::nullopt;
}

constexpr Page emptyLibrary[] = {{"welcome", [](Desktop&) {}}};

constexpr Page library[] = {
    {"all-photos", [](Desktop&) {}},
    {"selection", [](Desktop& desktop) { pick(desktop, 2); }},
    {"folder",
     [](Desktop& desktop) {
         if (!desktop.model().library().folders().empty())
             desktop.library().state()->showFolder(desktop.model().library().folders().front());
     }},
    {"unavailable", [](Desktop& desktop) { desktop.library().state()->setSection(model::Section::offline); }},
    {"import", [](Desktop& desktop) { desktop.library().state()->setSection(model::Section::keep); }},
    {"skip", [](Desktop& desktop) { desktop.library().state()->setSection(model::Section::cleanup); }},
    {"no-match",
     [](Desktop& desktop) { desktop.library().state()->setQuery(QStringLiteral("no such name")); }},
    {"similar-before",
     [](Desktop& desktop) { desktop.library().state()->setSection(model::Section::similar); }},
    {"similar",
     [](Desktop& desktop) {
         desktop.library().state()->setSection(model::Section::similar);
         desktop.model().matches().find();
     }},
    {"remove-folder",
     [](Desktop& desktop) {
         if (!desktop.model().library().folders().empty())
             desktop.library().askToRemove(
                 QString::fromUtf8(desktop.model().library().folders().front().string()));
     }},
    {"notice",
     [](Desktop& desktop) { desktop.library().addFolders({QUrl(QStringLiteral("file:///proc/version"))}); }},
    {"details",
     [](Desktop& desktop) {
         pick(desktop, 1);
         desktop.library().state()->showDetails();
     }},
    {"rename",
     [](Desktop& desktop) {
         pick(desktop, 1);
         desktop.library().state()->showDetails();
         desktop.details().state().beginRename();
     }},
    {"compare",
     [](Desktop& desktop) {
         pick(desktop, 2);
         desktop.library().actions()->trigger(review::ActionSet::Compare);
     }},
    {"full-screen",
     [](Desktop& desktop) {
         if (const auto photos = desktop.model().library().availablePhotos(); !photos.empty())
             desktop.library().state()->openFullscreen(photos.front());
     }},
    {"film-editor",
     [](Desktop& desktop) {
         if (const auto photo = rawPhoto(desktop)) desktop.editors().show(photo->url);
     }},
    {"film-export",
     [](Desktop& desktop) {
         if (const auto photo = rawPhoto(desktop)) desktop.library().state()->exportFilm({*photo});
     }},
    {"organize", [](Desktop& desktop) { desktop.library().state()->organize(); }},
    {"quit",
     [](Desktop& desktop) {
         desktop.lifecycle().ask(QStringLiteral("Photos are being imported: Copying 3 of 12…"));
     }},
    {"settings", [](Desktop& desktop) { QMetaObject::invokeMethod(&desktop.window(), "showSettings"); }},
};

} // namespace

std::span<const Page> pagesOfEmptyLibrary() {
    return emptyLibrary;
}
std::span<const Page> pages() {
    return library;
}

void showFirstPage(Desktop& desktop) {
    desktop.details().state().renaming()->cancel();
    for (auto* window : QGuiApplication::topLevelWindows())
        if (window != &desktop.window()) window->close();
    desktop.compare().close();
    desktop.fullscreen().close();
    desktop.archive().done();
    desktop.filmBatch().close();
    desktop.library().answerRemoval(false);
    desktop.lifecycle().answer(false);
    desktop.library().dismissNotice();
    desktop.library().state()->setQuery({});
    desktop.library().showSection(review::WindowState::Library);
}

} // namespace lumisort::app
