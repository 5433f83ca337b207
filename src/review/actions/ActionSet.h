#pragma once

#include "ui/Command.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <functional>
#include <map>

namespace lumisort::review {

/// The actions of one scope: a window or a sheet with a target of its own. Texts, icons and keys come from
/// the one table of actions (ActionTable.h); the owner adds what each does and when it is enabled. Main
/// thread.
class ActionSet : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("comes with the state of a window")

public:
    enum Id {
        AddFolder,
        Organize,
        FindMatches,
        Stop,
        Keep,
        Skip,
        ClearMark,
        ClearChoice,
        Undo,
        Redo,
        Details,
        Compare,
        Film,
        ExportFilm,
        PasteFilm,
        Search,
        Settings,
        ShowInFileManager,
        PreviousPhoto,
        NextPhoto,
        PreviousPair,
        NextPair,
        Fit,
        ActualPixels,
        ZoomIn,
        ZoomOut,
        PanLeft,
        PanRight,
        PanUp,
        PanDown,
        Close,
    };
    Q_ENUM(Id)

    enum class Scope {
        grid = 1,       ///< the library's window; the target is the selection
        photo = 2,      ///< the menu of one photo
        compare = 4,    ///< the compare sheet; the target is the active photo
        fullScreen = 8, ///< the full-screen viewer
    };

    /// Says why the action is disabled now, "" where it is not.
    using Reason = std::function<QString()>;

    explicit ActionSet(Scope scope, QObject* parent = nullptr) : QObject(parent), scope_(scope) {}

    Scope scope() const { return scope_; }
    /// Adds an action that the table lists for this scope.
    ui::Command& add(Id id, std::function<void()> act, Reason reason = {});
    /// The action; null where the owner has not added it.
    Q_INVOKABLE lumisort::ui::Command* of(lumisort::review::ActionSet::Id id) const;
    /// Triggers an action that was added; nothing happens while it is disabled.
    void trigger(Id id) { of(id)->trigger(); }
    /// Triggers the action of this key. Returns whether there is one, enabled or not. A key that repeats
    /// because it is held triggers only actions that move or zoom.
    Q_INVOKABLE bool press(int key, int modifiers, bool repeats = false);
    /// Asks every action's reason again.
    void refresh();

    /// Every action that was added, by id.
    std::map<Id, ui::Command*> all() const;

private:
    struct Entry {
        ui::Command* command; ///< child of this
        Reason reason;
    };

    Scope scope_;
    std::map<Id, Entry> entries_;
};

} // namespace lumisort::review
