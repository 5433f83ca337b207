#include "review/viewer/FullscreenPhotoController.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QScreen>
#include <algorithm>

namespace lumisort::review {
namespace {

QScreen* screenInUse() {
    const auto* focused = QGuiApplication::focusWindow();
    return focused ? focused->screen() : QGuiApplication::primaryScreen();
}

} // namespace

FullscreenPhotoController::FullscreenPhotoController(model::LibraryModel& model, MarkHistory& history,
                                                     QQmlEngine& engine, QObject* parent)
    : QObject(parent), model_(model), history_(history), engine_(engine) {}

FullscreenPhotoController::~FullscreenPhotoController() {
    delete window_;
}

void FullscreenPhotoController::show(const library::Photo& photo, const std::vector<library::Photo>& photos) {
    close();
    const auto found = std::ranges::find(photos, photo.url, &library::Photo::url);
    if (found == photos.end()) return;
    state_ = std::make_unique<FullscreenPhotoState>(model_, history_, photos,
                                                    static_cast<int>(found - photos.begin()));
    QQmlComponent view(&engine_, QUrl(QStringLiteral("qrc:/qt/qml/Lumisort/Viewer/FullscreenWindow.qml")));
    auto* window = qobject_cast<QQuickWindow*>(
        view.createWithInitialProperties({{QStringLiteral("state"), QVariant::fromValue(state_.get())}}));
    if (!window) qFatal("%s", qPrintable(view.errorString()));
    window_ = window;

    auto* screen = screenInUse();
    window->setScreen(screen);
    window->setGeometry(screen ? screen->availableGeometry() : QRect(0, 0, 1200, 800));
    connect(state_.get(), &FullscreenPhotoState::closeWanted, this, &FullscreenPhotoController::close,
            Qt::QueuedConnection);
    // The window may also be closed by the desktop.
    connect(window, &QWindow::visibleChanged, this, [this](bool visible) {
        if (!visible)
            QMetaObject::invokeMethod(this, &FullscreenPhotoController::close, Qt::QueuedConnection);
    });
    window->showFullScreen();
    window->requestActivate();
}

void FullscreenPhotoController::close() {
    if (auto* window = window_.data()) {
        window_.clear();
        window->disconnect(this);
        delete window;
    }
    state_.reset();
}

} // namespace lumisort::review
