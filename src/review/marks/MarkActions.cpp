#include "review/marks/MarkActions.h"

namespace lumisort::review {

using library::ReviewDecision;

void addMarkActions(ActionSet& actions, MarkHistory& history,
                    const std::function<std::vector<library::Photo>()>& target,
                    const ActionSet::Reason& reason) {
    const auto add = [&](ActionSet::Id id, MarkHistory::Decision decision) {
        actions.add(id, [&history, target, decision] { history.mark(target(), decision); }, reason);
    };
    add(ActionSet::Keep, ReviewDecision::keep);
    add(ActionSet::Skip, ReviewDecision::cleanup);
    add(ActionSet::ClearMark, std::nullopt);
}

void addUndoActions(ActionSet& actions, MarkHistory& history) {
    actions.add(
        ActionSet::Undo, [&history] { history.undo(); },
        [&history] { return history.canUndo() ? QString() : QStringLiteral("Nothing to undo."); });
    actions.add(
        ActionSet::Redo, [&history] { history.redo(); },
        [&history] { return history.canRedo() ? QString() : QStringLiteral("Nothing to redo."); });
    QObject::connect(&history, &MarkHistory::changed, &actions, &ActionSet::refresh);
}

} // namespace lumisort::review
