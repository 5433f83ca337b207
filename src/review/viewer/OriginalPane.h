#pragma once

#include "library/OriginalDecodeQueue.h"
#include "model/TaskRunner.h"
#include "ui/PaneGeometry.h"
#include "ui/PhotoView.h"

#include <QPointF>
#include <QPointer>
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
    Q_PROPERTY(lumisort::ui::PhotoView* view READ view WRITE setView NOTIFY viewChanged)
    Q_PROPERTY(bool leads MEMBER leads_ NOTIFY leadsChanged)
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)
    Q_PROPERTY(QString error READ error NOTIFY statusChanged)
    Q_PROPERTY(QRectF place READ place NOTIFY placeChanged)

public:
    enum Status { Empty, Loading, Ready, Failed };
    Q_ENUM(Status)

    explicit OriginalPane(QQuickItem* parent = nullptr);
    ~OriginalPane() override;

    /// The photo, as FileUrl writes it; "" for none.
    QString url() const { return url_; }
    void setUrl(const QString& url);
    /// How the photo is zoomed and panned; null draws nothing. It outlives the pane or is reset before.
    ui::PhotoView* view() const { return view_; }
    void setView(ui::PhotoView* view);

    Status status() const;
    /// Why there is no picture, fit to be shown; "" otherwise.
    QString error() const { return error_; }
    /// Where the picture lies; empty without one.
    QRectF place() const { return shows() ? ui::placeOf(paneView()) : QRectF(); }

    /// Moves the view by a drag of `translation` that began at the centre `start`; see ui::draggedCenter.
    Q_INVOKABLE void drag(QPointF start, QPointF translation);
    /// Zooms about a place in the pane.
    Q_INVOKABLE void zoomAt(double zoom, QPointF anchor);

Q_SIGNALS:
    void urlChanged();
    void viewChanged();
    void leadsChanged();
    void placeChanged();
    void statusChanged();

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    bool shows() const { return original_ && view_; }
    ui::PaneView paneView() const;
    void redraw();
    void show(library::OriginalDecodeQueue::Answer answer);

    QString url_, error_;
    QPointer<ui::PhotoView> view_;
    bool leads_ = true; ///< the view's steps are measured by this pane
    library::OriginalDecodeQueue::Original original_;
    library::OriginalDecodeQueue::Ticket ticket_;
    model::TaskRunner runner_;
    int request_ = 0; ///< of the photo now wanted; a late answer to another is dropped
};

} // namespace lumisort::review
