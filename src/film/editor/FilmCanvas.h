#pragma once

#include "film/editor/FilmEditorModel.h"
#include "ui/PaneGeometry.h"

#include <QPointer>
#include <QQuickItem>
#include <QTimer>

namespace lumisort::film {

/// Draws an editor's picture, whole or zoomed: the preview or its draft, the original in its place or to the
/// left of a divider, and at actual pixels the export's own pixels of what is visible. Main thread.
class FilmCanvas : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(lumisort::film::FilmEditorModel* editor READ editor WRITE setEditor NOTIFY editorChanged)
    Q_PROPERTY(bool actualPixels READ actualPixels WRITE setActualPixels NOTIFY magnified)
    Q_PROPERTY(double zoom READ zoom WRITE setZoom NOTIFY magnified)
    Q_PROPERTY(QPointF center READ center WRITE setCenter NOTIFY viewChanged)
    Q_PROPERTY(double divider READ divider WRITE setDivider NOTIFY viewChanged)
    Q_PROPERTY(bool original READ original WRITE setOriginal NOTIFY viewChanged)
    Q_PROPERTY(QRectF place READ place NOTIFY viewChanged)
    Q_PROPERTY(double scale100 READ scale100 NOTIFY viewChanged)

public:
    explicit FilmCanvas(QQuickItem* parent = nullptr);

    FilmEditorModel* editor() const { return editor_; }
    void setEditor(FilmEditorModel* editor);
    /// One pixel of the photo for each of the display at zoom 1; else the whole photo fits at zoom 1.
    bool actualPixels() const { return actualPixels_; }
    void setActualPixels(bool actualPixels);
    double zoom() const { return zoom_; }
    void setZoom(double zoom);
    /// 0 … 1 each way: what part of the overflow lies left of and above the canvas.
    QPointF center() const { return center_; }
    void setCenter(QPointF center);
    /// Where the original ends and the print begins, 0 … 1 of the canvas's width; negative for no divider.
    double divider() const { return divider_; }
    void setDivider(double divider);
    /// The original is shown in place of the print.
    bool original() const { return original_; }
    void setOriginal(bool original);
    /// Where the picture lies in the canvas; empty without one.
    QRectF place() const;
    /// The zoom at which a fitted photo would have actual pixels.
    double scale100() const;

    Q_INVOKABLE QPointF dragged(QPointF start, QPointF translation) const;
    Q_INVOKABLE QPointF zoomed(double zoom, QPointF anchor) const;

    static constexpr double mostZoom = 8;

Q_SIGNALS:
    void editorChanged();
    void viewChanged();
    /// `actualPixels` or `zoom` changed. Not viewChanged, which follows the canvas's size as well: that
    /// depends on these two in the window.
    void magnified();
    /// The wheel was turned: the factor by which to zoom, and where.
    void wheelTurned(double factor, QPointF position);
    /// The canvas got the keyboard; `reason` is a Qt::FocusReason.
    void focusReasonSeen(int reason);

protected:
    void focusInEvent(QFocusEvent* event) override {
        QQuickItem::focusInEvent(event);
        Q_EMIT focusReasonSeen(event->reason());
    }
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    bool hasPicture() const { return editor_ && editor_->preview(); }
    ui::PaneView view() const;
    void changeView();
    void askForDetail();
    QRect visiblePixels() const;

    QPointer<FilmEditorModel> editor_;
    bool actualPixels_ = false, original_ = false;
    double zoom_ = 1, divider_ = -1;
    QPointF center_{0.5, 0.5};
    QTimer rest_; ///< runs while the view moves; detail is rendered for a view at rest
};

} // namespace lumisort::film
