#pragma once

#include "platform/files/FileUrl.h"

namespace lumisort::library {

/// The path of the user's library document: the one in the environment variable LUMISORT_TEST_SESSION, else
/// "Lumisort/library.json" in the user's data folder (XDG_DATA_HOME, or ~/.local/share).
files::FileUrl libraryLocation();

} // namespace lumisort::library
