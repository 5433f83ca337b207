#include "library/DeviceDiscovery.h"

#include <gmock/gmock.h>

namespace lumisort::library {

using files::FileUrl;
using testing::ElementsAre;
using testing::IsEmpty;
using volumes::Volume;

namespace {

FileUrl url(std::string_view path) {
    return FileUrl::fromPath(path);
}

} // namespace

TEST(DeviceDiscovery, OffersOnlyDrivesThatPeopleCarry) {
    const Volume card{.url = url("/media/card/"), .external = true};
    auto network = card, hidden = card, image = card, internal = card;
    network.local = false;
    hidden.browsable = false;
    image.diskImage = true;
    internal.external = false;
    for (const auto& refused : {network, hidden, image, internal})
        EXPECT_THAT(DeviceDiscovery::mountedDevices(std::vector{refused}), IsEmpty());
    EXPECT_THAT(DeviceDiscovery::mountedDevices(std::vector{card, internal}), ElementsAre(card.url));
}

TEST(DeviceDiscovery, FollowsDrivesThatComeAndGo) {
    const auto there = url("/media/there/"), b = url("/media/b/"), a = url("/media/a/"),
               old = url("/media/old/");
    const std::vector folders{url("/media/old/DCIM/"), url("/home/photos/")};
    DeviceDiscovery devices{.connected = {there}};

    devices.update({there, b, a, old}, folders);
    EXPECT_THAT(devices.pending, ElementsAre(a, b)); // by path; old holds a library folder
    devices.update({there, b, a, old}, folders);
    EXPECT_THAT(devices.pending, ElementsAre(a, b)); // offered once

    devices.update({there, b}, folders);
    EXPECT_THAT(devices.pending, ElementsAre(b));
    devices.update({there, b, a}, folders);
    EXPECT_THAT(devices.pending, ElementsAre(b, a)); // plugged in again: new again, behind the others

    // A volume that is itself a library folder, with or without the slash.
    DeviceDiscovery fresh;
    fresh.update({url("/media/c/")}, std::vector{url("/media/c")});
    EXPECT_THAT(fresh.pending, IsEmpty());
}

} // namespace lumisort::library
