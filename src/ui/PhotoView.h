#pragma once

#include "ui/PaneGeometry.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <QPointF>

namespace lumisort::ui {

/// How photos are zoomed and panned: the state that one pane, or several linked ones, draw from. Main thread.
class PhotoView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double zoom READ zoom WRITE setZoom NOTIFY changed)
    Q_PROPERTY(QPointF center READ center WRITE setCenter NOTIFY changed)
    Q_PROPERTY(bool actualPixels READ actualPixels WRITE setActualPixels NOTIFY changed)
    Q_PROPERTY(double maxZoom READ maxZoom CONSTANT)

public:
    static constexpr double zoomPerStep = 1.25;
    /// How far one step pans, as a part of the pane.
    static constexpr double panPerStep = 0.1;

    explicit PhotoView(QObject* parent = nullptr) : PhotoView(12, parent) {}
    explicit PhotoView(double maxZoom, QObject* parent = nullptr) : QObject(parent), maxZoom_(maxZoom) {}

    double zoom() const { return zoom_; }
    double maxZoom() const { return maxZoom_; }
    /// Clamped to 1 … maxZoom; a value that is not finite changes nothing. A photo that fits its pane again
    /// is centred.
    void setZoom(double zoom);
    /// As PaneView::center; clamped to 0 … 1 each way, ignored where it is not finite.
    QPointF center() const { return center_; }
    void setCenter(QPointF center);
    /// Whether one picture pixel is one pixel of the display at zoom 1; else the whole photo fits its pane.
    bool actualPixels() const { return actualPixels_; }
    /// Unzooms and centres in both cases.
    void setActualPixels(bool actualPixels);
    /// The whole photo, or its pixels: unzoomed and centred.
    void reset() { setActualPixels(actualPixels_); }

    /// Zooms so that what is under `anchor` in `pane` stays there as far as the picture's edges allow.
    void zoomAt(double zoom, const PaneView& pane, QPointF anchor);
    void zoomBySteps(int steps);
    /// Moves the view by steps to the right and down; the pane that leads knows how far that is.
    void panBySteps(int right, int down) { Q_EMIT panWanted(QPointF(right, down) * panPerStep); }

Q_SIGNALS:
    void changed();
    /// The view is to move by this part of the leading pane's width and height.
    void panWanted(QPointF panes);

private:
    double maxZoom_;
    double zoom_ = 1;
    QPointF center_{0.5, 0.5};
    bool actualPixels_ = false;
};

} // namespace lumisort::ui
