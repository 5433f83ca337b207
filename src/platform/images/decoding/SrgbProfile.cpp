#include "platform/images/decoding/SrgbProfile.h"

#include "platform/images/Decoder.h"

#include <lcms2.h>

#include <algorithm>
#include <array>
#include <memory>

namespace lumisort::images {

std::string srgbProfile() {
    const std::unique_ptr<void, decltype(&cmsCloseProfile)> profile(cmsCreate_sRGBProfile(),
                                                                    &cmsCloseProfile);
    cmsUInt32Number size = 0;
    if (!profile || !cmsSaveProfileToMem(profile.get(), nullptr, &size))
        throw ImageError("The sRGB profile cannot be made.");
    std::string bytes(size, '\0');
    if (!cmsSaveProfileToMem(profile.get(), bytes.data(), &size))
        throw ImageError("The sRGB profile cannot be made.");
    // Little CMS writes the present time, so that no two files would be the same: the year 2000 instead
    // (ICC.1:2010, 7.2.8).
    constexpr std::array<char, 12> date{0x07, '\xD0', 0, 1, 0, 1, 0, 0, 0, 0, 0, 0};
    std::ranges::copy(date, bytes.begin() + 24);
    return bytes;
}

} // namespace lumisort::images
