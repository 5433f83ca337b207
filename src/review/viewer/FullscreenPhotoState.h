#pragma once

#include "library/OriginalDecodeQueue.h"
#include "review/marks/MarkHistory.h"
#include "review/viewer/ShownPhoto.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <QPointF>
#include <vector>

namespace lumisort::review {

/// One photo of a list at a time, as large as the screen: which, and how it is zoomed and panned. Has its
/// neighbours decoded ahead, one each side. Lives as long as its window. Main thread; model and history
/// outlive it.
class FullscreenPhotoState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("one comes with each full-screen window")
    Q_PROPERTY(int index READ index NOTIFY indexChanged)
    Q_PROPERTY(int count READ count CONSTANT)
    Q_PROPERTY(lumisort::review::ShownPhoto photo READ photo NOTIFY indexChanged)
    Q_PROPERTY(QString decision READ decision NOTIFY decisionChanged)
    Q_PROPERTY(double zoom READ zoom WRITE setZoom NOTIFY viewChanged)
    Q_PROPERTY(QPointF center READ center WRITE setCenter NOTIFY viewChanged)
    Q_PROPERTY(double mostZoom READ mostZoom CONSTANT)

public:
    static constexpr double maxZoom = 12;
    static constexpr double zoomPerKey = 1.25;

    /// `index` is a position in `photos`.
    FullscreenPhotoState(model::LibraryModel& model, MarkHistory& history, std::vector<library::Photo> photos,
                         int index, QObject* parent = nullptr);

    int index() const { return index_; }
    int count() const { return static_cast<int>(photos_.size()); }
    const library::Photo& current() const { return photos_[static_cast<std::size_t>(index_)]; }
    ShownPhoto photo() const { return ShownPhoto::of(current()); }
    QString decision() const { return decision_; } ///< as decisionWord has it

    double zoom() const { return zoom_; }
    double mostZoom() const { return maxZoom; }
    /// Corrected to 1 … maxZoom, and centred at exactly 1; what is no number changes nothing.
    void setZoom(double zoom);
    QPointF center() const { return center_; }
    /// Corrected to 0 … 1 each way.
    void setCenter(QPointF center);
    /// Steps by `delta`, unzoomed and centred; beyond the ends nothing changes.
    Q_INVOKABLE void move(int delta);
    /// Marks the photo shown: "Import", "Skip", or anything else to clear.
    Q_INVOKABLE void mark(const QString& decision);

    /// What a key does in the viewer; false for one that does nothing here.
    Q_INVOKABLE bool press(int key, int modifiers);
    Q_INVOKABLE void close() { Q_EMIT closeWanted(); }

Q_SIGNALS:
    void indexChanged();
    void decisionChanged();
    void viewChanged();
    void closeWanted();

private:
    void updateDecision();
    void prefetch();

    model::LibraryModel& model_;
    MarkHistory& history_;
    const std::vector<library::Photo> photos_;
    int index_;
    int direction_ = 1; ///< of the last step
    std::vector<library::OriginalDecodeQueue::Ticket> ahead_;
    QString decision_;
    double zoom_ = 1;
    QPointF center_{0.5, 0.5};
};

} // namespace lumisort::review
