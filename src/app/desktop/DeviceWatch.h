#pragma once

#include "model/ModelSurroundings.h"

#include <QObject>
#include <QSocketNotifier>
#include <functional>

namespace lumisort::app {

/// Has the drives looked at while the window shows: at once, then every 30 seconds; when something is mounted
/// or unmounted; and when the application becomes active. Main thread.
class DeviceWatch : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::seconds interval{30};
    /// One drive brings several changes of the mount table.
    static constexpr std::chrono::milliseconds settling{200};

    struct Surroundings {
        /// Becomes exceptional when the mount table changes; -1 for none.
        int mountDescriptor = -1;
        /// Whether it did change, and waits for the next change.
        std::function<bool()> mountsChanged;
        decltype(model::ModelSurroundings::after) after = model::ModelSurroundings::afterOnTimer;
    };

    DeviceWatch(std::function<void()> look, Surroundings with, QObject* parent = nullptr);

    void setShown(bool shown);
    void applicationActivated();

private:
    void tick();
    void mountTableSpoke();

    std::function<void()> look_;
    Surroundings with_;
    QSocketNotifier mounts_{QSocketNotifier::Exception};
    bool shown_ = false;
    bool settling_ = false;
    int showing_ = 0; ///< which showing of the window; a tick of an earlier one is over
};

} // namespace lumisort::app
