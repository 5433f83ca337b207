#include "app/desktop/DeviceWatch.h"

#include <utility>

namespace lumisort::app {

DeviceWatch::DeviceWatch(std::function<void()> look, Dependencies deps, QObject* parent)
    : QObject(parent), look_(std::move(look)), deps_(std::move(deps)) {
    if (deps_.mountDescriptor < 0) return;
    mounts_.setSocket(deps_.mountDescriptor);
    mounts_.setEnabled(true);
    connect(&mounts_, &QSocketNotifier::activated, this, &DeviceWatch::onMountTableChanged);
}

void DeviceWatch::setShown(bool shown) {
    if (shown == std::exchange(shown_, shown)) return;
    ++showing_;
    if (shown) tick();
}

void DeviceWatch::applicationActivated() {
    if (shown_) look_();
}

void DeviceWatch::tick() {
    look_();
    deps_.after(interval, this, [this, showing = showing_] {
        if (showing == showing_) tick();
    });
}

// The event loop's own poll has taken the kernel's event: polling the descriptor once more would find
// nothing.
void DeviceWatch::onMountTableChanged() {
    if (!shown_ || std::exchange(settling_, true)) return;
    deps_.after(settling, this, [this] {
        settling_ = false;
        if (shown_) look_();
    });
}

} // namespace lumisort::app
