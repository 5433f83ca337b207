#include "organize/FreeSpace.h"

#include "platform/text/ByteCount.h"

#include <cstdint>
#include <optional>
#include <set>

namespace lumisort::organize {

namespace {

/// Adds up what copies need at one destination.
class Need {
public:
    Need(files::FileSystem& system, const std::string& destination)
        : system_(system), destination_(destination), facts_(system.volumeFacts(destination)) {
        if (facts_.sharesBlocks) device_ = system.status(destination, files::Links::follow).device;
    }

    bool isUnlimited() const { return !facts_.availableBytes; }

    /// `bytes` is the size of the source's copy, `device` where the source is.
    void add(std::int64_t bytes, std::uint64_t device) {
        if (device_ != device) bytes_ += bytes;
    }

    /// Without asking where the source is, unless that matters.
    void add(const OrganizeItem& item) {
        try {
            add(item.bytes, device_ ? system_.status(item.source.path(), files::Links::follow).device : 0);
        } catch (const files::FileError&) { // the run reports it with the photo
        }
    }

    void require() const {
        if (isUnlimited() || bytes_ <= *facts_.availableBytes) return;
        std::string needed = text::byteCount(bytes_), available = text::byteCount(*facts_.availableBytes);
        if (needed == available) {
            needed = std::to_string(bytes_) + " bytes";
            available = std::to_string(*facts_.availableBytes) + " bytes";
        }
        throw files::FileError("copy the photos to", destination_,
                               needed + " are needed, " + available + " are free");
    }

private:
    files::FileSystem& system_;
    const std::string& destination_;
    files::VolumeFacts facts_;
    std::optional<std::uint64_t> device_; ///< of the destination, where copies on it share blocks
    std::int64_t bytes_ = 0;
};

} // namespace

void requireFreeSpace(files::FileSystem& system, const std::string& destination, const OrganizePlan& plan) {
    Need need(system, destination);
    for (const auto& item : plan.items) need.add(item);
    need.require();
}

void requireFreeSpace(files::FileSystem& system, const std::string& destination,
                      std::span<const library::Photo> photos, bool skipDuplicates,
                      const std::stop_token& stop) {
    Need need(system, destination);
    if (need.isUnlimited()) return;
    std::set<std::int64_t> sizes;
    for (const auto& photo : photos) {
        if (stop.stop_requested()) return;
        try {
            const auto status = system.status(photo.url.path(), files::Links::follow);
            if (!skipDuplicates || sizes.insert(status.size).second) need.add(status.size, status.device);
        } catch (const files::FileError&) { // planning reports it
        }
    }
    need.require();
}

} // namespace lumisort::organize
