#pragma once

#include "platform/files/FileLock.h"
#include "platform/files/FileUrl.h"

#include <string>

namespace lumisort::app {

/// The library document at a path from the command line, the user's own when that is empty.
files::FileUrl documentAt(const std::string& path);

/// The file that programs lock while they have the document open.
std::string lockFileOf(const files::FileUrl& document);

/// What to say when another program has it open.
std::string lockedMessage(const files::FileUrl& document);

/// Throws std::runtime_error with that message when another program has the document open.
files::FileLock lockDocument(const files::FileUrl& document);

} // namespace lumisort::app
