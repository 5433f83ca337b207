#pragma once

#include "review/details/DetailsState.h"

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QQuickWindow>
#include <QRect>
#include <QSize>

class QQmlEngine;

namespace lumisort::review {

/// The upper left corner of the panel on a screen: at its right edge, a little below its top, never above it.
QPoint detailsPosition(const QRect& available, const QSize& panel);

/// Shows the details panel when the library asks for it. The panel is made once and hidden when it is closed,
/// and hides while another program is in front. Main thread; model and engine outlive it.
class PhotoDetailsController : public QObject {
    Q_OBJECT

public:
    PhotoDetailsController(model::LibraryModel& model, QQmlEngine& engine, QObject* parent = nullptr);
    ~PhotoDetailsController() override;

    /// Brings the panel to the front.
    void show();
    DetailsState& state() { return state_; }
    /// None before it was shown for the first time.
    QQuickWindow* panel() const { return panel_; }

private:
    void make();
    void followApplication(Qt::ApplicationState application);

    QQmlEngine& engine_;
    DetailsState state_;
    QPointer<QQuickWindow> panel_;
    bool hiddenForOthers_ = false; ///< hidden because another program is in front
};

} // namespace lumisort::review
