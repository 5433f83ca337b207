#include "app/desktop/Pages.h"

#include "model/Utf8.h"

#include <QGuiApplication>
#include <algorithm>

namespace lumisort::app {

namespace {

void pick(Desktop& desktop, std::size_t count) {
    for (const auto& photo : desktop.model().availablePhotos()) {
        if (desktop.model().selected().size() >= count) return;
        desktop.model().select(photo);
    }
}

constexpr Page emptyLibrary[] = {{"welcome", [](Desktop&) {}}};

constexpr Page library[] = {
    {"all-photos", [](Desktop&) {}},
    {"selection", [](Desktop& desktop) { pick(desktop, 2); }},
    {"folder",
     [](Desktop& desktop) {
         if (!desktop.model().folders().empty())
             desktop.model().showFolder(desktop.model().folders().front());
     }},
    {"unavailable", [](Desktop& desktop) { desktop.model().setSection(QStringLiteral("offline")); }},
    {"import", [](Desktop& desktop) { desktop.model().setSection(QStringLiteral("keep")); }},
    {"skip", [](Desktop& desktop) { desktop.model().setSection(QStringLiteral("cleanup")); }},
    {"no-match", [](Desktop& desktop) { desktop.model().setQuery(QStringLiteral("no such name")); }},
    {"similar-before", [](Desktop& desktop) { desktop.model().setSection(QStringLiteral("similar")); }},
    {"similar",
     [](Desktop& desktop) {
         desktop.model().setSection(QStringLiteral("similar"));
         desktop.model().findSimilar();
     }},
    {"remove-folder",
     [](Desktop& desktop) {
         if (!desktop.model().folders().empty())
             desktop.library().askToRemove(model::fromUtf8(desktop.model().folders().front().string()));
     }},
    {"notice",
     [](Desktop& desktop) { desktop.library().addFolders({QUrl(QStringLiteral("file:///proc/version"))}); }},
    {"details",
     [](Desktop& desktop) {
         pick(desktop, 1);
         desktop.model().showDetails();
     }},
    {"rename",
     [](Desktop& desktop) {
         pick(desktop, 1);
         desktop.model().showDetails();
         desktop.details().state().beginRename();
     }},
    {"compare",
     [](Desktop& desktop) {
         pick(desktop, 2);
         desktop.library().commands()->compare->trigger();
     }},
    {"full-screen",
     [](Desktop& desktop) {
         if (const auto photos = desktop.model().availablePhotos(); !photos.empty())
             desktop.model().openFullscreen(photos.front());
     }},
    {"organize", [](Desktop& desktop) { desktop.model().beginOrganize(); }},
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
    auto& model = desktop.model();
    desktop.details().state().renaming()->cancel();
    for (auto* window : QGuiApplication::topLevelWindows())
        if (window != &desktop.window()) window->close();
    model.setCompare(false);
    desktop.fullscreen().close();
    model.setOrganize(false);
    desktop.library().answerRemoval(false);
    desktop.library().dismissNotice();
    model.setQuery({});
    desktop.library().showSection(QStringLiteral("library"));
}

} // namespace lumisort::app
