#pragma once

#include "platform/files/FileSystem.h"
#include "platform/files/FileUrl.h"

#include <string>

namespace lumisort::organize {

/// The XMP packet (ISO 16684-1) of a photo that the user keeps: five stars, the label "Green" and digiKam's
/// pick label "accepted".
std::string keptSidecarText();

/// The place of a copy's sidecar: the copy's whole name and ".xmp", where darktable and digiKam look.
files::FileUrl sidecarOf(const files::FileUrl& copy);

/// Writes the sidecar of a kept photo's copy, through a file of the name `temporary` in the run's folder; it
/// is whole or not there at every instant. A file that is there stays as it is. Throws files::FileError.
void writeKeptSidecar(files::FileSystem& system, const files::FileUrl& copy, const std::string& temporary);

} // namespace lumisort::organize
