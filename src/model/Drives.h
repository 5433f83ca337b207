#pragma once

#include "library/DeviceDiscovery.h"
#include "model/Availability.h"
#include "platform/volumes/Volume.h"

namespace lumisort::model {

/// The removable drives that are connected, and those of them that the user is still to be asked about. Main
/// thread; library and availability outlive it.
class Drives : public MainThreadObject {
    Q_OBJECT

public:
    Drives(const Library& library, Availability& availability, volumes::VolumeSource volumes);

    /// Connected drives without a folder of the library that were neither browsed nor dismissed.
    const std::vector<files::FileUrl>& pending() const { return devices_.pending; }
    const std::set<files::FileUrl>& connected() const { return devices_.connected; }

    /// Lists the drives and asks for a look at the library's files.
    void update();
    /// Takes a drive off `pending`.
    void dismiss(const files::FileUrl& volume);
    /// Takes a drive that is still connected off `pending`; updates the list where it is not. Returns whether
    /// it is.
    bool accept(const files::FileUrl& volume);

Q_SIGNALS:
    void changed();

private:
    const Library& library_;
    Availability& availability_;
    volumes::VolumeSource volumes_;
    library::DeviceDiscovery devices_;
};

} // namespace lumisort::model
