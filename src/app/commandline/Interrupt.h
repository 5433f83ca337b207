#pragma once

#include <stop_token>
#include <thread>

namespace lumisort::app {

/// Turns SIGINT, SIGTERM and SIGHUP into a stop request, so that a command ends at a clean point. Make it
/// first thing in main, before any other thread exists: threads inherit the blocked signals from there. A
/// second signal ends the process at once, for a system call that does not come back.
class Interrupt {
public:
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    std::stop_token token() const { return source_.get_token(); }

private:
    std::stop_source source_;
    std::jthread watcher_;
};

} // namespace lumisort::app
