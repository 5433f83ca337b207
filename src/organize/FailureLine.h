#pragma once

#include "platform/files/FileError.h"
#include "platform/files/FileUrl.h"

#include <string>
#include <string_view>

namespace lumisort::organize {

/// The source's path, ": ", and the error's description. That leaves the file's name out where it is the
/// source; where another file is the matter (the copy, its folder), it is named.
std::string failureLine(const files::FileUrl& source, const files::FileError& error);

/// The line of a photo that was not reached before the run was cancelled.
std::string cancelledLine(const files::FileUrl& source);
bool isCancelledLine(std::string_view line);

} // namespace lumisort::organize
