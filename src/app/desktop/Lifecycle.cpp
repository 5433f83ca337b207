#include "app/desktop/Lifecycle.h"

#include <utility>

namespace lumisort::app {

Lifecycle::Lifecycle(std::function<void()> exit, QObject* parent) : QObject(parent), exit_(std::move(exit)) {}

void Lifecycle::requestQuit() {
    if (const auto work = work_.underWay(); !work.isEmpty())
        ask(work);
    else
        quit();
}

void Lifecycle::ask(const QString& question) {
    if (std::exchange(question_, question) != question) Q_EMIT questionChanged();
}

void Lifecycle::answer(bool quit) {
    const bool asked = !question_.isEmpty();
    ask({});
    if (!asked || !quit) return;
    quitsAfterWork_ = true;
    work_.cancel();
    workChanged();
}

void Lifecycle::workChanged() {
    const auto work = work_.underWay();
    if (!question_.isEmpty()) ask(work); // work that has ended leaves nothing to ask, and a report to read
    if (work.isEmpty() && std::exchange(quitsAfterWork_, false)) quit();
}

void Lifecycle::quit() {
    if (std::exchange(quitting_, true)) return;
    Q_EMIT quitting();
    if (!model_) {
        exit_();
        return;
    }
    model::whenFinished(model_->flush(), this, [this] { exit_(); });
}

} // namespace lumisort::app
