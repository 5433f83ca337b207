#include "review/details/PhotoDetailsController.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QScreen>
#include <algorithm>
#include <utility>

namespace lumisort::review {

QPoint detailsPosition(const QRect& available, const QSize& panel) {
    constexpr int fromRight = 340, bottomFromTop = 680;
    const int lowerEdge = std::min(available.top() + bottomFromTop, available.top() + available.height());
    return {available.left() + available.width() - fromRight,
            std::max(lowerEdge - panel.height(), available.top())};
}

PhotoDetailsController::PhotoDetailsController(model::LibraryModel& model, QQmlEngine& engine,
                                               QObject* parent)
    : QObject(parent), engine_(engine), state_(model) {
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
            &PhotoDetailsController::followApplication);
}

PhotoDetailsController::~PhotoDetailsController() {
    delete panel_;
}

void PhotoDetailsController::show() {
    if (!panel_) make();
    if (!panel_) return;
    hiddenForOthers_ = false;
    panel_->show();
    panel_->raise();
    panel_->requestActivate();
}

void PhotoDetailsController::make() {
    auto* front = QGuiApplication::focusWindow();
    QQmlComponent component(&engine_, QUrl(QStringLiteral("qrc:/qt/qml/Lumisort/Details/DetailsWindow.qml")));
    if (!component.isReady()) {
        qCritical("%s", qPrintable(component.errorString()));
        return;
    }
    panel_ = qobject_cast<QQuickWindow*>(
        component.createWithInitialProperties({{QStringLiteral("details"), QVariant::fromValue(&state_)}}));
    panel_->setTransientParent(front); // floats above it
    if (auto* screen = front ? front->screen() : QGuiApplication::primaryScreen())
        panel_->setPosition(detailsPosition(screen->availableGeometry(), panel_->size()));
}

void PhotoDetailsController::followApplication(Qt::ApplicationState application) {
    if (!panel_) return;
    if (application == Qt::ApplicationActive) {
        if (!std::exchange(hiddenForOthers_, false)) return;
        // Comes back behind the window that was activated. What Qt's widgets tell the platform with this
        // property has no function for windows.
        constexpr auto quietly = "_q_showWithoutActivating";
        panel_->setProperty(quietly, true);
        panel_->show();
        panel_->setProperty(quietly, false);
    } else if (panel_->isVisible()) {
        hiddenForOthers_ = true;
        panel_->hide();
    }
}

} // namespace lumisort::review
