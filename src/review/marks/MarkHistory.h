#pragma once

#include "model/LibraryModel.h"

#include <QObject>
#include <QUndoStack>
#include <QtQml/qqmlregistration.h>
#include <optional>
#include <unordered_map>
#include <vector>

namespace lumisort::review {

/// Every mark that the user makes in a window goes through here, so that it can be taken back for as long as
/// the program runs. Taking back is marking, too: the library sees nothing else. Main thread; the model
/// outlives it.
class MarkHistory : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("one belongs to the library's window")
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY changed)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY changed)
    Q_PROPERTY(QString warning READ warning NOTIFY warningChanged)

public:
    using Decision = std::optional<library::ReviewDecision>;

    explicit MarkHistory(model::LibraryModel& model, QObject* parent = nullptr);

    /// Marks the photos; none clears. Without photos nothing happens.
    void mark(const std::vector<library::Photo>& photos, Decision decision);
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
    class MarkCommand;

    /// What the photo's decision will be once the marks under way are done.
    Decision expected(const library::Photo& photo) const;
    void send(const std::vector<library::Photo>& photos, Decision decision);
    void warn(const QString& warning);
    QString emptiedGroups(const std::vector<library::Photo>& photos) const;

    model::LibraryModel& model_;
    std::unordered_map<files::FileUrl, Decision> underWay_;
    QString warning_;
    QUndoStack stack_;
};

} // namespace lumisort::review
