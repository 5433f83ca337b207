#pragma once

#include "review/SimilarRows.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <optional>

namespace lumisort::review {

/// Where the keyboard is among the photos on show, grid or groups alike, and what keys and clicks do there.
/// The place follows its photo while rows come and go; when its photo leaves, the next one takes its place.
/// Main thread; model and rows outlive it.
class PhotoCursor : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("part of the library's window")
    Q_PROPERTY(int position READ position NOTIFY positionChanged)

public:
    PhotoCursor(model::LibraryModel& model, WindowState& window, const SimilarRows& groups);

    /// Among the photos on show; -1 before the first move.
    int position() const { return position_; }
    /// Columns of the grid; the groups know theirs.
    Q_INVOKABLE void setColumns(int columns);

    /// Moves by photos and rows; with `extend` everything from where the extension began is selected.
    Q_INVOKABLE void move(int photos, int rows, bool extend);
    Q_INVOKABLE void moveToEnd(bool first, bool extend);
    /// Toggles the selection of the photo under it.
    Q_INVOKABLE void toggle();
    Q_INVOKABLE void selectAll();
    /// Full screen.
    Q_INVOKABLE void open();
    /// A click on the photo at a position; with `extend` the range from the last click joins the selection.
    Q_INVOKABLE void click(int position, bool extend);
    /// The second click of two: takes the first one's toggling back and opens the photo.
    Q_INVOKABLE void doubleClick(int position);
    /// Goes to the next photo whose name begins with the text, letter case aside; from the photo under it
    /// on, and from the start again.
    Q_INVOKABLE void seek(const QString& text);

    std::optional<library::Photo> current() const { return at(position_); }

Q_SIGNALS:
    void positionChanged();

private:
    bool inGroups() const;
    int count() const;
    std::optional<library::Photo> at(int position) const;
    int find(const files::FileUrl& url) const;
    void place(int position);
    void follow();
    void selectRange(bool replace);
    void go(int position, bool extend);

    model::LibraryModel& model_;
    WindowState& window_;
    const SimilarRows& groups_;
    std::size_t columns_ = 1;
    int position_ = -1;
    int anchor_ = -1; ///< where an extension begins
    std::optional<files::FileUrl> url_;
};

} // namespace lumisort::review
