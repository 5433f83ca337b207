#include "platform/images/decoding/ColourProfile.h"

#include <lcms2.h>

#include <algorithm>
#include <deque>
#include <mutex>
#include <vector>

namespace lumisort::images {
namespace {

constexpr std::size_t profilesKept = 8;
/// Those of cameras and editors take a few kilobytes.
constexpr std::size_t mostProfileBytes = 1 << 20;

struct Known {
    std::vector<std::uint8_t> bytes;
    std::shared_ptr<const ColourProfile> profile;
};

std::shared_ptr<void> closing(cmsHPROFILE profile) {
    return {profile, [](void* open) { open ? cmsCloseProfile(open) : 0; }};
}

} // namespace

std::shared_ptr<const ColourProfile> ColourProfile::make(std::span<const std::uint8_t> profile) {
    const auto from =
        closing(cmsOpenProfileFromMem(profile.data(), static_cast<cmsUInt32Number>(profile.size())));
    if (!from || cmsGetColorSpace(from.get()) != cmsSigRgbData) return nullptr;
    const auto to = closing(cmsCreate_sRGBProfile());
    // Without the library's memory of the last pixel a transform has no state, and threads may share it.
    constexpr cmsUInt32Number flags =
        cmsFLAGS_NOCACHE | cmsFLAGS_COPY_ALPHA | cmsFLAGS_BLACKPOINTCOMPENSATION;
    const cmsHTRANSFORM transform = cmsCreateTransform(from.get(), TYPE_RGBA_8, to.get(), TYPE_RGBA_8,
                                                       INTENT_RELATIVE_COLORIMETRIC, flags);
    if (!transform) return nullptr;
    return std::shared_ptr<const ColourProfile>(new ColourProfile({transform, cmsDeleteTransform}));
}

void ColourProfile::toSRGB(Bitmap& bitmap) const {
    cmsDoTransform(transform_.get(), bitmap.rgba().data(), bitmap.rgba().data(),
                   static_cast<cmsUInt32Number>(bitmap.rgba().size() / 4));
}

std::shared_ptr<const ColourProfile> ColourProfile::find(std::span<const std::uint8_t> profile) {
    static std::mutex lock;
    static std::deque<Known> latest; // guarded by lock
    if (profile.size() > mostProfileBytes) return make(profile);
    const auto find = [&] {
        return std::ranges::find_if(
            latest, [&](const Known& known) { return std::ranges::equal(known.bytes, profile); });
    };
    {
        const std::scoped_lock guard(lock);
        if (const auto known = find(); known != latest.end()) return known->profile;
    }
    auto fresh = make(profile);
    const std::scoped_lock guard(lock);
    if (find() == latest.end()) latest.push_front({{profile.begin(), profile.end()}, fresh});
    if (latest.size() > profilesKept) latest.pop_back();
    return fresh;
}

} // namespace lumisort::images
