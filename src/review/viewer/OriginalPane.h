#pragma once

#include "library/OriginalDecodeQueue.h"
#include "model/TaskRunner.h"
#include "ui/PaneGeometry.h"

#include <QPointF>
#include <QQuickItem>
#include <QString>

namespace lumisort::review {

/// Draws one original, whole or zoomed, from tiles of the level of detail that its size on the display calls
/// for: what it takes does not depend on the photo's size but on the pane's. An original that is known
/// already is there with the next frame; whether its file is still the same is looked up meanwhile. Works
/// with every scene graph. Main thread.
class OriginalPane : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString url READ url WRITE setUrl NOTIFY urlChanged)
    Q_PROPERTY(double zoom READ zoom WRITE setZoom NOTIFY viewChanged)
    Q_PROPERTY(QPointF center READ center WRITE setCenter NOTIFY viewChanged)
    Q_PROPERTY(bool actualPixels READ actualPixels WRITE setActualPixels NOTIFY viewChanged)
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)
    Q_PROPERTY(QString error READ error NOTIFY statusChanged)
    Q_PROPERTY(QRectF place READ place NOTIFY viewChanged)

public:
    enum Status { Empty, Loading, Ready, Failed };
    Q_ENUM(Status)

    explicit OriginalPane(QQuickItem* parent = nullptr);
    ~OriginalPane() override;

    /// The photo, as FileUrl writes it; "" for none.
    QString url() const { return url_; }
    void setUrl(const QString& url);
    /// The view, as ui::PaneView has it.
    double zoom() const { return zoom_; }
    void setZoom(double zoom);
    QPointF center() const { return center_; }
    void setCenter(QPointF center);
    bool actualPixels() const { return actualPixels_; }
    void setActualPixels(bool actualPixels);

    Status status() const;
    /// Why there is no picture, fit to be shown; "" otherwise.
    QString error() const { return error_; }
    /// Where the picture lies; empty without one.
    QRectF place() const { return original_ ? ui::placeOf(view()) : QRectF(); }

    /// See draggedCenter and zoomedCenter; without a picture the centre stays as it is.
    Q_INVOKABLE QPointF dragged(QPointF start, QPointF translation) const;
    Q_INVOKABLE QPointF zoomed(double zoom, QPointF anchor) const;

Q_SIGNALS:
    void urlChanged();
    void viewChanged();
    void statusChanged();
    /// The wheel was turned over the pane: the factor by which to zoom, and where.
    void wheelTurned(double factor, QPointF position);

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    ui::PaneView view() const;
    void changeView();
    void show(library::OriginalDecodeQueue::Answer answer);

    QString url_, error_;
    double zoom_ = 1;
    QPointF center_{0.5, 0.5};
    bool actualPixels_ = false;
    library::OriginalDecodeQueue::Original original_;
    library::OriginalDecodeQueue::Ticket ticket_;
    model::TaskRunner runner_;
    int request_ = 0; ///< of the photo now wanted; a late answer to another is dropped
};

} // namespace lumisort::review
