#pragma once

#include "review/WindowState.h"
#include "review/actions/ActionSet.h"
#include "review/marks/MarkHistory.h"

#include <QString>
#include <optional>

namespace lumisort::review {

/// The actions of one photo's menu. Main thread; model and history outlive it.
class PhotoActions : public ActionSet {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("part of the library's window")

public:
    PhotoActions(model::LibraryModel& model, WindowState& window, MarkHistory& marks);

    /// Makes the photo of this file URL the target.
    Q_INVOKABLE void setTarget(const QString& url);

private:
    std::optional<library::Photo> target() const;

    model::LibraryModel& model_;
    WindowState& window_;
    std::optional<files::FileUrl> url_;
};

} // namespace lumisort::review
