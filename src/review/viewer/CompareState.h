#pragma once

#include "review/actions/ActionSet.h"
#include "review/marks/MarkHistory.h"
#include "review/viewer/PhotoPairs.h"
#include "review/viewer/ShownPhoto.h"
#include "ui/PhotoView.h"

#include <QtQml/qqmlregistration.h>

#include <QList>
#include <QObject>
#include <QVariantList>
#include <vector>

namespace lumisort::review {

/// The compare sheet: which originals stand side by side, their linked view, and the active one, which
/// actions apply to. Opened with two photos of a group, it steps through the group's pairs. Main thread;
/// model and history outlive it.
class CompareState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("one belongs to the library's window")
    Q_PROPERTY(bool opened READ isOpened NOTIFY openedChanged)
    Q_PROPERTY(QVariantList photos READ photos NOTIFY photosChanged)
    Q_PROPERTY(QList<int> decisions READ decisions NOTIFY decisionsChanged)
    Q_PROPERTY(int active READ active WRITE setActive NOTIFY activeChanged)
    Q_PROPERTY(bool flipped READ isFlipped WRITE setFlipped NOTIFY flippedChanged)
    Q_PROPERTY(lumisort::ui::PhotoView* view READ view CONSTANT)
    Q_PROPERTY(lumisort::review::ActionSet* actions READ actions CONSTANT)
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

    QVariantList photos() const;                        ///< of ShownPhoto
    QList<int> decisions() const { return decisions_; } ///< Decision::Value by position
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

    /// How all panes are zoomed and panned.
    ui::PhotoView* view() { return &view_; }
    /// What can be done to the active photo, and to the view.
    ActionSet* actions() { return &actions_; }
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

private:
    void addActions();
    void setPhotos(std::vector<library::Photo> photos);
    void updateDecisions();
    void follow(const files::FileUrl& before, const library::Photo& after);
    std::int64_t pairOfGroup() const;

    model::LibraryModel& model_;
    MarkHistory& history_;
    std::vector<library::Photo> photos_, group_;
    QList<int> decisions_;
    std::int64_t pair_ = -1; ///< -1: the photos are no pair of a group
    int active_ = 0;
    bool opened_ = false, flipped_ = false;
    ui::PhotoView view_{maxZoom};
    ActionSet actions_{ActionSet::Scope::compare};
};

} // namespace lumisort::review
