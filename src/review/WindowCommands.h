#pragma once

#include "review/PhotoCursor.h"
#include "review/marks/MarkHistory.h"
#include "ui/Command.h"

#include <QObject>
#include <QQmlListProperty>
#include <QtQml/qqmlregistration.h>
#include <functional>
#include <vector>

namespace lumisort::review {

/// What the user can ask the library's window for, each with its keys, what it does and when it can be asked
/// for. Follows the model by itself. Main thread; model, history and cursor outlive it.
class WindowCommands : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("part of the library's window")
    Q_PROPERTY(lumisort::ui::Command* addFolder MEMBER addFolder CONSTANT)
    Q_PROPERTY(lumisort::ui::Command* organize MEMBER organize CONSTANT)
    Q_PROPERTY(lumisort::ui::Command* findMatches MEMBER findMatches CONSTANT)
    Q_PROPERTY(lumisort::ui::Command* stop MEMBER stop CONSTANT)
    Q_PROPERTY(lumisort::ui::Command* keep MEMBER keep CONSTANT)
    Q_PROPERTY(lumisort::ui::Command* skip MEMBER skip CONSTANT)
    Q_PROPERTY(lumisort::ui::Command* clearMark MEMBER clearMark CONSTANT)
    Q_PROPERTY(lumisort::ui::Command* clearChoice MEMBER clearChoice CONSTANT)
    Q_PROPERTY(lumisort::ui::Command* undo MEMBER undo CONSTANT)
    Q_PROPERTY(lumisort::ui::Command* redo MEMBER redo CONSTANT)
    Q_PROPERTY(lumisort::ui::Command* details MEMBER details CONSTANT)
    Q_PROPERTY(lumisort::ui::Command* compare MEMBER compare CONSTANT)
    Q_PROPERTY(lumisort::ui::Command* film MEMBER film CONSTANT)
    Q_PROPERTY(lumisort::ui::Command* search MEMBER search CONSTANT)
    Q_PROPERTY(QQmlListProperty<lumisort::ui::Command> all READ all CONSTANT)

public:
    WindowCommands(model::LibraryModel& model, MarkHistory& marks, QObject* parent);

    ui::Command *addFolder, *organize, *findMatches, *stop;
    ui::Command *keep, *skip, *clearMark, *clearChoice, *undo, *redo;
    ui::Command *details, *compare, *film;
    ui::Command* search; ///< the view moves the focus to the search field

    QQmlListProperty<ui::Command> all() { return {this, &all_}; }

private:
    /// Adds a command that does `action` and that cannot be asked for while `reason` says something.
    ui::Command* add(const char* text, const char* icon, const char* keys, std::function<QString()> reason,
                     std::function<void()> action);
    void refresh();

    model::LibraryModel& model_;
    QList<ui::Command*> all_;
    std::vector<std::function<QString()>> reasons_; ///< by position in all_
};

} // namespace lumisort::review
