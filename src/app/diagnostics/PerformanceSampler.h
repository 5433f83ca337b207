#pragma once

#include "platform/files/FileSystem.h"
#include "platform/time/Clock.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace lumisort::app {

/// One second of measurements.
struct PerformanceRecord {
    double elapsed = 0;     ///< seconds since the sampler was made
    double footprintMB = 0; ///< resident memory of the process in MiB, 0 when it could not be read
    double peakMB = 0;      ///< highest footprint so far
    double maxMainQueueDelayMS =
        0; ///< longest time that a probe waited for the main thread, 0 without probes
    double p95MainQueueDelayMS = 0; ///< their 95th percentile

    friend bool operator==(const PerformanceRecord&, const PerformanceRecord&) = default;
};

/// Resident memory of this process in bytes, from /proc/self/status; 0 when it cannot be read. Cheap enough
/// to be asked sixty times a second, which reading the exact share of shared pages (smaps_rollup) is not.
std::int64_t residentBytes();

/// Measures how long the main thread keeps others waiting, and the memory of the process. `sample` is called
/// by one thread, sixty times a second; the only work of the main thread is a tiny probe, of which at most
/// one is on its way, so a blocked main thread yields one long delay and not many.
class PerformanceSampler {
public:
    /// Has a function run on the main thread, soon.
    using PostToMainThread = std::function<void(std::function<void()>)>;

    struct Dependencies {
        files::FileSystem& system;
        time::Clock clock;
        PostToMainThread post;
        std::function<std::int64_t()> footprintBytes = residentBytes;
    };

    /// All records so far go to the file `output` once a second, as a JSON array; what keeps it from being
    /// written is passed over.
    PerformanceSampler(std::string output, Dependencies deps);

    void sample();

    const std::vector<PerformanceRecord>& records() const { return records_; }

private:
    /// Shared with the probe that is under way, which may outlive the sampler.
    struct Probes {
        std::mutex lock; ///< guards both
        bool pending = false;
        std::vector<double> delaysMS;
    };

    void probeMainThread(double now);
    void record(double now, double footprintMB);
    void write() const;

    std::string output_;
    Dependencies deps_;
    std::shared_ptr<Probes> probes_ = std::make_shared<Probes>();
    std::vector<PerformanceRecord> records_;
    double started_ = 0;
    double lastWrite_ = 0;
    double peakMB_ = 0;
};

} // namespace lumisort::app
