#include "review/marks/MarkHistory.h"

#include <QStringList>
#include <algorithm>
#include <map>
#include <unordered_set>

namespace lumisort::review {

using library::Photo;
using library::ReviewDecision;

class MarkHistory::MarkCommand : public QUndoCommand {
public:
    MarkCommand(MarkHistory& history, const std::vector<Photo>& photos, Decision decision)
        : history_(history), photos_(photos), decision_(decision) {
        for (const auto& photo : photos) before_[history.expected(photo)].push_back(photo);
    }

    void redo() override { history_.send(photos_, decision_); }
    void undo() override {
        for (const auto& [decision, photos] : before_) history_.send(photos, decision);
    }

private:
    MarkHistory& history_;
    std::vector<Photo> photos_;
    Decision decision_;
    std::map<Decision, std::vector<Photo>> before_;
};

MarkHistory::MarkHistory(model::LibraryModel& model, QObject* parent) : QObject(parent), model_(model) {
    connect(&stack_, &QUndoStack::indexChanged, this, &MarkHistory::changed);
}

MarkHistory::Decision MarkHistory::expected(const Photo& photo) const {
    const auto request = underWay_.find(photo.url);
    return request == underWay_.end() ? model_.decision(photo) : request->second;
}

void MarkHistory::mark(const std::vector<Photo>& photos, Decision decision) {
    if (photos.empty()) return;
    warn(decision == ReviewDecision::cleanup ? emptiedGroups(photos) : QString());
    stack_.push(new MarkCommand(*this, photos, decision)); // the stack owns it and lets it mark
}

void MarkHistory::undo() {
    warn({});
    stack_.undo();
}

void MarkHistory::redo() {
    warn({});
    stack_.redo();
}

void MarkHistory::send(const std::vector<Photo>& photos, Decision decision) {
    for (const auto& photo : photos) underWay_[photo.url] = decision;
    model_.mark(photos, decision);
    model::whenFinished(model_.marking(), this, [this] {
        if (model_.marking().isFinished()) underWay_.clear();
    });
}

void MarkHistory::warn(const QString& warning) {
    if (std::exchange(warning_, warning) != warning) Q_EMIT warningChanged();
}

QString MarkHistory::emptiedGroups(const std::vector<Photo>& photos) const {
    std::unordered_set<files::FileUrl> skipped;
    for (const auto& photo : photos) skipped.insert(photo.url);
    QStringList numbers;
    const auto& groups = model_.similarGroups();
    for (std::size_t i = 0; i < groups.size(); ++i) {
        const auto& members = groups[i].photos;
        const auto isSkipped = [&](const Photo& photo) {
            return skipped.contains(photo.url) || expected(photo) == ReviewDecision::cleanup;
        };
        if (std::ranges::any_of(members, [&](const Photo& photo) { return skipped.contains(photo.url); }) &&
            std::ranges::all_of(members, isSkipped))
            numbers << QString::number(i + 1);
    }
    if (numbers.isEmpty()) return {};
    constexpr int most = 3;
    const auto shown = QStringList(numbers.first(std::min<qsizetype>(numbers.size(), most)))
                           .join(QStringLiteral(", "));
    if (numbers.size() > most)
        return QStringLiteral("Every photo of %1 groups is now skipped.").arg(numbers.size());
    return numbers.size() == 1 ? QStringLiteral("Every photo of group %1 is now skipped.").arg(shown)
                               : QStringLiteral("Every photo of groups %1 is now skipped.").arg(shown);
}

} // namespace lumisort::review
