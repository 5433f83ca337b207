#pragma once

namespace lumisort::volumes {

/// Tells when something was mounted or unmounted: the kernel marks /proc/self/mountinfo with a priority event
/// (POLLPRI, proc(5)). Used by one thread.
class MountWatcher {
public:
    MountWatcher();
    ~MountWatcher();
    MountWatcher(const MountWatcher&) = delete;
    MountWatcher& operator=(const MountWatcher&) = delete;

    /// For an event loop: wait for exceptional conditions on it, then call changed(). -1 when the table
    /// cannot be opened.
    int descriptor() const { return descriptor_; }

    /// Whether the table changed since the last call. Does not wait.
    bool changed();

private:
    int descriptor_ = -1;
};

} // namespace lumisort::volumes
