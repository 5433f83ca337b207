#pragma once

#include "organize/OrganizeEngine.h"
#include "platform/time/LocalTime.h"
#include "support/MemoryFileSystem.h"

#include <chrono>
#include <string>
#include <vector>

namespace lumisort::test {

/// The same month in every time zone.
inline time::Timestamp midMonth(int year, unsigned month) {
    const std::chrono::sys_seconds day = std::chrono::sys_days(std::chrono::year(year) / month / 15);
    return time::Timestamp::fromUnix(day.time_since_epoch().count());
}

inline void unheard(double, const std::string&) {}

/// Photos in "/photos" and a destination "/usb" in memory, a clock that stands and numbered identifiers.
struct OrganizeScene {
    MemoryFileSystem system;
    int identifiers = 1000;
    organize::OrganizeEngine engine{
        system, {.now = [] { return midMonth(2026, 11); }, .uptimeSeconds = [] { return 0.0; }}, [this] {
            return "ABCD" + std::to_string(++identifiers) + "-0000-4000-8000-000000000000";
        }};
    std::vector<library::Photo> photos;
    const files::FileUrl destination = files::FileUrl::fromPath("/usb");
    /// Of the first plan.
    const std::string root = "/usb/Lumisort-" + time::folderStamp(midMonth(2026, 11)) + "-ABCD1001";

    OrganizeScene() { system.makeFolder("/usb"); }

    OrganizeScene& add(const std::string& name, const std::string& contents,
                       std::optional<time::Timestamp> date = midMonth(2024, 5)) {
        const auto url = files::FileUrl::fromPath("/photos/" + name);
        system.write(url.path(), contents);
        photos.push_back({.url = url, .date = date});
        return *this;
    }
    organize::OrganizePlan plan(bool skipDuplicates = true) {
        return engine.plan(photos, destination, {.skipDuplicates = skipDuplicates}, unheard, {});
    }
    organize::OrganizeReport execute(const organize::OrganizePlan& plan) {
        return engine.execute(plan, [](std::int64_t, std::int64_t) {}, {});
    }
    organize::OrganizeReport storedReport() {
        return organize::readReport(system, files::FileUrl::fromPath(root + "/Lumisort-report.json"));
    }
    bool isEmpty() const { return system.filesBelow("/usb").empty(); }
};

} // namespace lumisort::test
