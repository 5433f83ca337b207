#pragma once

#include "app/diagnostics/PerformanceSampler.h"

#include <thread>

namespace lumisort::app {

/// Samples every 16 ms, about a display frame, on a thread of its own from construction to destruction.
class PerformanceDiagnostics {
public:
    PerformanceDiagnostics(std::string output, PerformanceSampler::Dependencies deps);

private:
    PerformanceSampler sampler_;
    std::jthread timer_;
};

} // namespace lumisort::app
