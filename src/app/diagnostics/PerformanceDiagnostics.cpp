#include "app/diagnostics/PerformanceDiagnostics.h"

#include <chrono>
#include <condition_variable>

namespace lumisort::app {

namespace {

constexpr std::chrono::milliseconds samplingInterval{16};

} // namespace

PerformanceDiagnostics::PerformanceDiagnostics(std::string output, PerformanceSampler::Dependencies deps)
    : sampler_(std::move(output), std::move(deps)), timer_([this](const std::stop_token& stop) {
          std::mutex mutex;
          std::condition_variable_any ended;
          auto due = std::chrono::steady_clock::now();
          std::unique_lock lock(mutex);
          while (!stop.stop_requested()) {
              sampler_.sample();
              // A sample that took long is not made up for.
              due = std::max(due + samplingInterval, std::chrono::steady_clock::now());
              ended.wait_until(lock, stop, due, [] { return false; });
          }
      }) {}

} // namespace lumisort::app
