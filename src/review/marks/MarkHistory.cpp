#include "review/marks/MarkHistory.h"

#include <QStringList>
#include <algorithm>
#include <unordered_set>
#include <utility>

namespace lumisort::review {

using library::Photo;
using library::ReviewDecision;

/// One step: the photos under their present names, and what the step replaced.
struct MarkHistory::Step {
    std::vector<Photo> photos;
    Decision decision;
    std::unordered_map<files::FileUrl, Decision> before; ///< decisions that the step replaces
    std::shared_ptr<model::StoredMarks> replaced;        ///< by the latest time it was carried out
};

class MarkHistory::MarkCommand : public QUndoCommand {
public:
    MarkCommand(MarkHistory& history, std::shared_ptr<Step> step)
        : history_(history), step_(std::move(step)) {}

    void redo() override { history_.carryOut(*step_); }
    void undo() override { history_.takeBack(*step_); }

private:
    MarkHistory& history_;
    std::shared_ptr<Step> step_;
};

MarkHistory::MarkHistory(model::LibraryModel& model, QObject* parent)
    : QObject(parent), model_(model), question_(model) {
    connect(&stack_, &QUndoStack::indexChanged, this, &MarkHistory::changed);
    connect(&model.library(), &model::Library::renamed, this, &MarkHistory::follow);
}

MarkHistory::Decision MarkHistory::expected(const Photo& photo) const {
    const auto request = underWay_.find(photo.url);
    return request == underWay_.end() ? model_.library().decision(photo) : request->second;
}

void MarkHistory::mark(const std::vector<Photo>& photos, Decision decision) {
    if (decision != ReviewDecision::cleanup) return push(photos, decision);
    question_.ask(photos,
                  [this](const std::vector<Photo>& skipped) { push(skipped, ReviewDecision::cleanup); });
}

void MarkHistory::push(const std::vector<Photo>& photos, Decision decision) {
    if (photos.empty()) return;
    warn(decision == ReviewDecision::cleanup ? emptiedGroups(photos) : QString());
    auto step = std::make_shared<Step>(photos, decision);
    for (const auto& photo : photos) step->before.emplace(photo.url, expected(photo));
    std::erase_if(steps_, [](const auto& each) { return each.expired(); });
    steps_.push_back(step);
    stack_.push(new MarkCommand(*this, std::move(step))); // the stack owns the command and carries it out
}

void MarkHistory::undo() {
    warn({});
    stack_.undo();
}

void MarkHistory::redo() {
    warn({});
    stack_.redo();
}

void MarkHistory::carryOut(Step& step) {
    for (const auto& photo : step.photos) underWay_[photo.url] = step.decision;
    step.replaced = std::make_shared<model::StoredMarks>();
    forgetWhenDone(model_.marking().mark(step.photos, step.decision, step.replaced));
}

void MarkHistory::takeBack(const Step& step) {
    for (const auto& [photo, decision] : step.before) underWay_[photo] = decision;
    forgetWhenDone(model_.marking().restore(step.replaced));
}

void MarkHistory::forgetWhenDone(const QFuture<model::MarkSummary>& request) {
    model::whenFinished(request, this, [this] {
        if (model_.marking().pending().isFinished()) underWay_.clear();
    });
}

void MarkHistory::follow(const files::FileUrl& before, const Photo& after) {
    const auto rename = [&](std::unordered_map<files::FileUrl, Decision>& decisions) {
        if (auto entry = decisions.extract(before)) {
            entry.key() = after.url;
            decisions.insert(std::move(entry));
        }
    };
    rename(underWay_);
    for (const auto& each : steps_) {
        const auto step = each.lock();
        if (!step) continue;
        std::ranges::replace(step->photos, before, after, &Photo::url);
        for (auto& mark : *step->replaced)
            if (mark.photo == before) mark.photo = after.url;
        rename(step->before);
    }
}

void MarkHistory::warn(const QString& warning) {
    if (std::exchange(warning_, warning) != warning) Q_EMIT warningChanged();
}

QString MarkHistory::emptiedGroups(const std::vector<Photo>& photos) const {
    std::unordered_set<files::FileUrl> skipped;
    for (const auto& photo : photos) skipped.insert(photo.url);
    QStringList numbers;
    const auto& groups = model_.matches().groups();
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
    const auto shown =
        QStringList(numbers.first(std::min<qsizetype>(numbers.size(), most))).join(QStringLiteral(", "));
    if (numbers.size() > most)
        return QStringLiteral("Every photo of %1 groups is now skipped.").arg(numbers.size());
    return numbers.size() == 1 ? QStringLiteral("Every photo of group %1 is now skipped.").arg(shown)
                               : QStringLiteral("Every photo of groups %1 is now skipped.").arg(shown);
}

} // namespace lumisort::review
