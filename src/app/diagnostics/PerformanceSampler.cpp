#include "app/diagnostics/PerformanceSampler.h"

#include "platform/files/AtomicFile.h"

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace lumisort::app {

namespace {

constexpr double recordSeconds = 1.0;
constexpr double mebibytesPerByte = 1.0 / 1'048'576;

double percentile95(const std::vector<double>& ascending) {
    if (ascending.empty()) return 0;
    const auto index = static_cast<std::size_t>(static_cast<double>(ascending.size()) * 0.95);
    return ascending[std::min(index, ascending.size() - 1)];
}

} // namespace

std::int64_t residentBytes() {
    const std::unique_ptr<FILE, int (*)(FILE*)> status(std::fopen("/proc/self/status", "re"), std::fclose);
    char line[256];
    long long kibibytes = 0;
    while (status && std::fgets(line, sizeof line, status.get()))
        if (std::sscanf(line, "VmRSS: %lld kB", &kibibytes) == 1)
            return kibibytes * 1024; // NOLINT(cert-err34-c)
    return 0;
}

PerformanceSampler::PerformanceSampler(std::string output, Dependencies deps)
    : output_(std::move(output)), deps_(std::move(deps)), started_(deps_.clock.uptimeSeconds()),
      lastWrite_(started_) {}

void PerformanceSampler::sample() {
    const double footprintMB = static_cast<double>(deps_.footprintBytes()) * mebibytesPerByte;
    peakMB_ = std::max(peakMB_, footprintMB);
    const double now = deps_.clock.uptimeSeconds();
    probeMainThread(now);
    if (now - lastWrite_ >= recordSeconds) {
        record(now, footprintMB);
        write();
        lastWrite_ = now;
    }
}

void PerformanceSampler::probeMainThread(double now) {
    {
        const std::scoped_lock guard(probes_->lock);
        if (std::exchange(probes_->pending, true)) return;
    }
    deps_.post([probes = probes_, uptime = deps_.clock.uptimeSeconds, now] {
        const double arrived = uptime();
        const std::scoped_lock guard(probes->lock);
        probes->delaysMS.push_back((arrived - now) * 1000);
        probes->pending = false;
    });
}

void PerformanceSampler::record(double now, double footprintMB) {
    std::vector<double> delays;
    {
        const std::scoped_lock guard(probes_->lock);
        delays = probes_->delaysMS;
        probes_->delaysMS.clear();
    }
    std::ranges::sort(delays);
    records_.push_back({.elapsed = now - started_,
                        .footprintMB = footprintMB,
                        .peakMB = peakMB_,
                        .maxMainQueueDelayMS = delays.empty() ? 0 : delays.back(),
                        .p95MainQueueDelayMS = percentile95(delays)});
}

void PerformanceSampler::write() const {
    rapidjson::StringBuffer text;
    rapidjson::PrettyWriter<rapidjson::StringBuffer> json(text);
    json.StartArray();
    for (const auto& record : records_) {
        json.StartObject();
        const auto field = [&](const char* key, double value) {
            json.Key(key);
            json.Double(value);
        };
        field("elapsed", record.elapsed);
        field("footprintMB", record.footprintMB);
        field("maxMainQueueDelayMS", record.maxMainQueueDelayMS);
        field("p95MainQueueDelayMS", record.p95MainQueueDelayMS);
        field("peakMB", record.peakMB);
        json.EndObject();
    }
    json.EndArray();
    try {
        files::replaceFile(deps_.system, output_, {text.GetString(), text.GetSize()});
    } catch (const files::FileError&) {
        // Measuring must not disturb what is measured, and there is nobody to tell.
    }
}

} // namespace lumisort::app
