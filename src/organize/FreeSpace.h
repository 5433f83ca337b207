#pragma once

#include "library/Photo.h"
#include "organize/OrganizePlan.h"
#include "platform/files/FileSystem.h"

#include <span>
#include <stop_token>
#include <string>

namespace lumisort::organize {

// Both throw files::FileError, naming both figures, when the folder at `destination` has too little space,
// and let a destination pass that does not say how much it has. A file whose copy can share its blocks (both
// on one device, whose file system can) needs none. What the check does not see (other programs writing
// meanwhile) ends as a failure of the photos that no longer fit.

/// For the copies of a plan.
void requireFreeSpace(files::FileSystem& system, const std::string& destination, const OrganizePlan& plan);

/// For a run that is not planned yet, from the sizes of its photos alone, so that nobody waits for the
/// digests of a run that cannot begin. With `skipDuplicates` only one photo of each size counts: photos of
/// one size may be duplicates, photos of different sizes cannot be. Photos that cannot be looked at count
/// nothing. Returns early after a stop.
void requireFreeSpace(files::FileSystem& system, const std::string& destination,
                      std::span<const library::Photo> photos, bool skipDuplicates,
                      const std::stop_token& stop);

} // namespace lumisort::organize
