#include "app/desktop/Lifecycle.h"

namespace lumisort::app {

Lifecycle::Lifecycle(std::function<void()> exit, QObject* parent) : QObject(parent), exit_(std::move(exit)) {}

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
