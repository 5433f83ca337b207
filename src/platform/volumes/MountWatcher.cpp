#include "platform/volumes/MountWatcher.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace lumisort::volumes {

MountWatcher::MountWatcher() : descriptor_(open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)) {}

MountWatcher::~MountWatcher() {
    if (descriptor_ >= 0) close(descriptor_);
}

bool MountWatcher::changed() {
    if (descriptor_ < 0) return false;
    pollfd watched{.fd = descriptor_, .events = POLLPRI, .revents = 0};
    // Asking also takes the event away.
    return poll(&watched, 1, 0) > 0 && (watched.revents & (POLLPRI | POLLERR)) != 0;
}

} // namespace lumisort::volumes
