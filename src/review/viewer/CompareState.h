#pragma once

#include "review/marks/MarkHistory.h"
#include "review/viewer/PhotoPairs.h"
#include "review/viewer/ShownPhoto.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <QPointF>
#include <QStringList>
#include <QVariantList>
#include <vector>

namespace lumisort::review {

/// Originals side by side: which, how they are zoomed and panned (all alike), and which one the keys speak
/// to. Opened with two photos of a group, it steps through the group's pairs. Main thread; model and history
/// outlive it.
class CompareState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("one belongs to the library's window")
    Q_PROPERTY(bool opened READ isOpened NOTIFY openedChanged)
    Q_PROPERTY(QVariantList photos READ photos NOTIFY photosChanged)
    Q_PROPERTY(QStringList decisions READ decisions NOTIFY decisionsChanged)
    Q_PROPERTY(int active READ active WRITE setActive NOTIFY activeChanged)
    Q_PROPERTY(bool flipped READ isFlipped WRITE setFlipped NOTIFY flippedChanged)
    Q_PROPERTY(double zoom READ zoom WRITE setZoom NOTIFY viewChanged)
    Q_PROPERTY(bool actualPixels READ actualPixels NOTIFY viewChanged)
    Q_PROPERTY(QPointF center READ center WRITE setCenter NOTIFY viewChanged)
    Q_PROPERTY(double mostZoom READ mostZoom CONSTANT)
    Q_PROPERTY(qint64 pair READ pair NOTIFY photosChanged)
    Q_PROPERTY(qint64 pairCount READ pairCount NOTIFY photosChanged)

public:
    static constexpr double maxZoom = 8;

    CompareState(model::LibraryModel& model, MarkHistory& history, QObject* parent = nullptr);

    /// Shows the photos, from two up, in this order; with fewer it stays as it is. `group` is the group of
    /// similar photos that they come from, its anchor first.
    void open(std::vector<library::Photo> photos, std::vector<library::Photo> group = {});
    Q_INVOKABLE void close();
    bool isOpened() const { return opened_; }

    QVariantList photos() const;                         ///< of ShownPhoto
    QStringList decisions() const { return decisions_; } ///< as decisionWord has them
    int active() const { return active_; }
    /// A position that does not exist changes nothing.
    void setActive(int index);
    /// Makes the photo `step` positions on active, around the ends.
    Q_INVOKABLE void moveActive(int step);

    /// While flipped, the active pane shows its neighbour's photo in place of its own.
    bool isFlipped() const { return flipped_; }
    void setFlipped(bool flipped);
    /// Which photo the pane at `index` shows.
    Q_INVOKABLE int shownIn(int index) const;

    double zoom() const { return zoom_; }
    double mostZoom() const { return maxZoom; }
    /// Corrected to 1 … maxZoom; what is no number changes nothing.
    void setZoom(double zoom);
    QPointF center() const { return center_; }
    /// Corrected to 0 … 1 each way.
    void setCenter(QPointF center);
    bool actualPixels() const { return actualPixels_; }
    /// Whole photos, or one of their pixels on each pixel of the screen; unzoomed and centred in both cases.
    Q_INVOKABLE void fit() { show(false); }
    Q_INVOKABLE void showActualPixels() { show(true); }

    /// Makes the photo active and marks it: "Import", "Skip", or anything else to clear.
    Q_INVOKABLE void mark(int index, const QString& decision);
    Q_INVOKABLE void markActive(const QString& decision) { mark(active_, decision); }
    /// Takes the last mark back, or sets it again.
    Q_INVOKABLE void undo() { history_.undo(); }
    Q_INVOKABLE void redo() { history_.redo(); }
    /// Opens the file in its default application.
    Q_INVOKABLE void openOriginal(int index) const;

    /// Position of the shown pair among those of the group, from 1; 0 where there is nothing to step through.
    qint64 pair() const { return pair_ + 1; }
    qint64 pairCount() const { return pair_ < 0 ? 0 : review::pairCount(std::ssize(group_)); }
    /// Shows the pair `step` further on; beyond the ends nothing happens.
    Q_INVOKABLE void movePair(int step);

Q_SIGNALS:
    void openedChanged();
    void photosChanged();
    void decisionsChanged();
    void activeChanged();
    void flippedChanged();
    void viewChanged();

private:
    void show(bool actualPixels);
    void setPhotos(std::vector<library::Photo> photos);
    void updateDecisions();
    std::int64_t pairOfGroup() const;

    model::LibraryModel& model_;
    MarkHistory& history_;
    std::vector<library::Photo> photos_, group_;
    QStringList decisions_;
    std::int64_t pair_ = -1; ///< -1: the photos are no pair of a group
    int active_ = 0;
    double zoom_ = 1;
    QPointF center_{0.5, 0.5};
    bool opened_ = false, flipped_ = false, actualPixels_ = false;
};

} // namespace lumisort::review
