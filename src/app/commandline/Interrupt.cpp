#include "app/commandline/Interrupt.h"

#include "app/commandline/ExitStatus.h"

#include <pthread.h>
#include <unistd.h>

#include <csignal>
#include <ctime>

namespace lumisort::app {

namespace {

sigset_t watchedSignals() {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&set, signal);
    return set;
}

} // namespace

Interrupt::Interrupt() {
    const sigset_t set = watchedSignals();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    watcher_ = std::jthread([this](const std::stop_token& ended) {
        const sigset_t signals = watchedSignals();
        // The wait is short so that the thread notices the end of the program by itself.
        const timespec wait{.tv_sec = 0, .tv_nsec = 50'000'000};
        while (!ended.stop_requested()) {
            if (sigtimedwait(&signals, nullptr, &wait) < 0) continue;
            if (!source_.request_stop()) _exit(static_cast<int>(ExitStatus::interrupted));
        }
    });
}

Interrupt::~Interrupt() = default;

} // namespace lumisort::app
