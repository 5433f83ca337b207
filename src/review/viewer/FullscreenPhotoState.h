#pragma once

#include "library/OriginalDecodeQueue.h"
#include "model/Decision.h"
#include "review/actions/ActionSet.h"
#include "review/marks/MarkHistory.h"
#include "review/viewer/ShownPhoto.h"
#include "ui/PhotoView.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <vector>

namespace lumisort::review {

/// The full-screen viewer: which photo of a list it shows, and its view. The photo's neighbours are decoded
/// ahead, one each side. Lives as long as its window. Main thread; model and history outlive it.
class FullscreenPhotoState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("one comes with each full-screen window")
    Q_PROPERTY(int index READ index NOTIFY indexChanged)
    Q_PROPERTY(int count READ count CONSTANT)
    Q_PROPERTY(lumisort::review::ShownPhoto photo READ photo NOTIFY indexChanged)
    Q_PROPERTY(int decision READ decision NOTIFY decisionChanged)
    Q_PROPERTY(lumisort::ui::PhotoView* view READ view CONSTANT)
    Q_PROPERTY(lumisort::review::ProtectionQuestion* question READ question CONSTANT)
    Q_PROPERTY(lumisort::review::ActionSet* actions READ actions CONSTANT)

public:
    static constexpr double maxZoom = 12;

    /// `index` is a position in `photos`.
    FullscreenPhotoState(model::LibraryModel& model, MarkHistory& history, std::vector<library::Photo> photos,
                         int index, QObject* parent = nullptr);

    int index() const { return index_; }
    int count() const { return static_cast<int>(photos_.size()); }
    const library::Photo& current() const { return photos_[static_cast<std::size_t>(index_)]; }
    ShownPhoto photo() const { return ShownPhoto::of(current()); }
    model::Decision::Value decision() const { return decision_; }

    ui::PhotoView* view() { return &view_; }
    /// What can be done to the photo shown, and to the view.
    ActionSet* actions() { return &actions_; }
    ProtectionQuestion* question() { return history_.question(); }
    /// Steps by `delta`, unzoomed and centred; beyond the ends nothing changes.
    void move(int delta);

Q_SIGNALS:
    void indexChanged();
    void decisionChanged();
    void closeWanted();

private:
    void addActions();
    void updateDecision();
    void follow(const files::FileUrl& before, const library::Photo& after);
    void prefetch();

    model::LibraryModel& model_;
    MarkHistory& history_;
    std::vector<library::Photo> photos_;
    int index_;
    int direction_ = 1; ///< of the last step
    std::vector<library::OriginalDecodeQueue::Ticket> ahead_;
    model::Decision::Value decision_ = model::Decision::None;
    ui::PhotoView view_{maxZoom};
    ActionSet actions_{ActionSet::Scope::fullScreen};
};

} // namespace lumisort::review
