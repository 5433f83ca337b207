#include "model/Drives.h"

#include <utility>

namespace lumisort::model {

using library::DeviceDiscovery;

Drives::Drives(const Library& library, Availability& availability, volumes::VolumeSource volumes)
    : library_(library), availability_(availability), volumes_(std::move(volumes)) {
    devices_.connected = DeviceDiscovery::mountedDevices(volumes_());
}

void Drives::update() {
    assertMainThread();
    auto devices = devices_;
    devices.update(DeviceDiscovery::mountedDevices(volumes_()), library_.folders());
    if (std::exchange(devices_, devices) != devices) Q_EMIT changed();
    availability_.refresh();
}

void Drives::dismiss(const files::FileUrl& volume) {
    if (std::erase(devices_.pending, volume) > 0) Q_EMIT changed();
}

bool Drives::accept(const files::FileUrl& volume) {
    const bool present = DeviceDiscovery::mountedDevices(volumes_()).contains(volume);
    present ? dismiss(volume) : update();
    return present;
}

} // namespace lumisort::model
