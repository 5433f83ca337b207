#pragma once

#include <string>
#include <string_view>

namespace lumisort::app {

/// One line on standard error that shows how far the work is. Writes nothing unless standard error is a
/// terminal, and takes its line back when it goes. For one thread.
class ProgressBar {
public:
    ProgressBar();
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// `fraction` is 0…1, below 0 when the end is not known.
    void show(double fraction, std::string_view text);
    void clear();

private:
    bool terminal_ = false;
    bool visible_ = false;
    double lastDrawn_ = -1; ///< seconds of uptime
};

} // namespace lumisort::app
