#pragma once

#include "model/ModelDependencies.h"

#include <QObject>
#include <QSocketNotifier>
#include <functional>

namespace lumisort::app {

/// Calls a function that looks at the drives, while the window is shown: when it becomes visible and every 30
/// seconds from then on, after something was mounted or unmounted, and when the application becomes active.
/// Main thread.
class DeviceWatch : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::seconds interval{30};
    /// How long changes of the mount table are collected: one drive makes several.
    static constexpr std::chrono::milliseconds settling{200};

    struct Dependencies {
        /// File descriptor that signals POLLPRI when mounts change (volumes::watchMountTable); -1 for none.
        /// Nothing else may poll it.
        int mountDescriptor = -1;
        decltype(model::ModelDependencies::after) after = model::ModelDependencies::afterOnTimer;
    };

    DeviceWatch(std::function<void()> look, Dependencies deps, QObject* parent = nullptr);

    void setShown(bool shown);
    void applicationActivated();

private:
    void tick();
    void onMountTableChanged();

    std::function<void()> look_;
    Dependencies deps_;
    QSocketNotifier mounts_{QSocketNotifier::Exception};
    bool shown_ = false;
    bool settling_ = false;
    int showing_ = 0; ///< counts how often the window was shown; a tick of an earlier time is dropped
};

} // namespace lumisort::app
