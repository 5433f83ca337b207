#pragma once

#include "model/LibraryModel.h"
#include "review/marks/ProtectionQuestion.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <QUndoStack>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace lumisort::review {

/// The undo stack of marks: every mark made in a window is a step that can be undone for as long as the
/// program runs. Undo restores the marks that the step replaced, stale ones too, under the present names of
/// their photos. Main thread; the model outlives it.
class MarkHistory : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("one belongs to the library's window")
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY changed)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY changed)
    Q_PROPERTY(lumisort::review::ProtectionQuestion* question READ question CONSTANT)
    Q_PROPERTY(QString warning READ warning NOTIFY warningChanged)

public:
    using Decision = std::optional<library::ReviewDecision>;

    explicit MarkHistory(model::LibraryModel& model, QObject* parent = nullptr);

    /// Marks the photos; none clears. Without photos nothing happens. Photos of protected folders are skipped
    /// once `question` is answered.
    void mark(const std::vector<library::Photo>& photos, Decision decision);
    ProtectionQuestion* question() { return &question_; }
    bool canUndo() const { return stack_.canUndo(); }
    bool canRedo() const { return stack_.canRedo(); }
    Q_INVOKABLE void undo();
    Q_INVOKABLE void redo();

    /// Says which groups of similar photos the last mark left with nothing to import, "" for none. It warns
    /// and forbids nothing.
    QString warning() const { return warning_; }
    Q_INVOKABLE void dismissWarning() { warn({}); }

Q_SIGNALS:
    void changed();
    void warningChanged();

private:
    struct Step;
    class MarkCommand;

    void push(const std::vector<library::Photo>& photos, Decision decision);
    /// What the photo's decision will be once the marks under way are done.
    Decision expected(const library::Photo& photo) const;
    void carryOut(Step& step);
    void takeBack(const Step& step);
    void forgetWhenDone(const QFuture<model::MarkSummary>& request);
    void follow(const files::FileUrl& before, const library::Photo& after);
    void warn(const QString& warning);
    QString emptiedGroups(const std::vector<library::Photo>& photos) const;

    model::LibraryModel& model_;
    ProtectionQuestion question_;
    std::unordered_map<files::FileUrl, Decision> underWay_;
    std::vector<std::weak_ptr<Step>> steps_; ///< of the commands on the stack
    QString warning_;
    QUndoStack stack_;
};

} // namespace lumisort::review
