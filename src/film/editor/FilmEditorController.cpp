#include "film/editor/FilmEditorController.h"

#include "platform/files/FileError.h"
#include "platform/files/ResolvedPath.h"
#include "platform/images/RawExtensions.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <algorithm>
#include <utility>

namespace lumisort::film {

FilmEditorController::FilmEditorController(FilmEditorServices& services, QQmlEngine& engine,
                                           files::FileSystem& system, QObject* parent)
    : QObject(parent), services_(services), engine_(engine), system_(system) {}

FilmEditorController::~FilmEditorController() {
    closeAll();
}

std::string FilmEditorController::keyOf(const files::FileUrl& photo) const {
    try {
        return files::resolvedPath(system_, photo.path());
    } catch (const files::FileError&) {
        return photo.path(); // The editor itself says that the file cannot be read.
    }
}

void FilmEditorController::show(const files::FileUrl& photo) {
    if (!images::hasRawExtension(photo.name())) return;
    const auto key = keyOf(photo);
    if (const auto found = editors_.find(key); found != editors_.end()) {
        auto* window = found->second.window;
        if (window->visibility() == QWindow::Minimized) window->showNormal();
        window->raise();
        window->requestActivate();
        return;
    }
    auto model = std::make_unique<FilmEditorModel>(photo, services_);
    auto* window = makeWindow(*model);
    if (!window) return;
    auto& editor = editors_[key] = {std::move(model), window};
    window->show();
    connect(window, &QWindow::visibleChanged, this, [this, key](bool visible) {
        if (!visible) windowClosed(key);
    });
    window->requestActivate();
    editor.model->start();
}

QQuickWindow* FilmEditorController::makeWindow(FilmEditorModel& model) {
    QQmlComponent component(&engine_,
                            QUrl(QStringLiteral("qrc:/qt/qml/Lumisort/FilmEditor/FilmEditorWindow.qml")));
    auto* made =
        component.createWithInitialProperties({{QStringLiteral("editor"), QVariant::fromValue(&model)}});
    auto* window = qobject_cast<QQuickWindow*>(made);
    if (!window) {
        qCritical("%s", qPrintable(component.errorString()));
        delete made;
    }
    return window;
}

void FilmEditorController::windowClosed(const std::string& key) {
    const auto found = editors_.find(key);
    if (found == editors_.end()) return;
    auto editor = std::move(found->second);
    editors_.erase(found);
    editor.model->close();
    // The window is still handling its close event and its items are bound to the model.
    editor.window->deleteLater();
    auto* model = editor.model.release();
    QObject::connect(editor.window, &QObject::destroyed, model, &QObject::deleteLater);
}

void FilmEditorController::closeAll() {
    for (auto& [key, editor] : std::exchange(editors_, {})) {
        editor.model->close();
        delete editor.window;
    }
}

FilmEditorModel* FilmEditorController::editor(const files::FileUrl& photo) const {
    if (editors_.empty()) return nullptr; // Most often: the disk need not be asked.
    const auto found = editors_.find(keyOf(photo));
    return found == editors_.end() ? nullptr : found->second.model.get();
}

bool FilmEditorController::isRendering() const {
    return std::ranges::any_of(editors_, [](const auto& entry) { return entry.second.model->isRendering(); });
}

QQuickWindow* FilmEditorController::window(const files::FileUrl& photo) const {
    const auto found = editors_.find(keyOf(photo));
    return found == editors_.end() ? nullptr : found->second.window;
}

} // namespace lumisort::film
