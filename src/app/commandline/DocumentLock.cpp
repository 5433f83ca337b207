#include "app/commandline/DocumentLock.h"

#include "app/commandline/Folders.h"
#include "app/commandline/Text.h"
#include "library/LibraryLocation.h"

#include <stdexcept>

namespace lumisort::app {

files::FileUrl documentAt(const std::string& path) {
    return path.empty() ? library::libraryLocation() : fileArgument(path);
}

std::string lockFileOf(const files::FileUrl& document) {
    return document.path() + ".lock";
}

std::string lockedMessage(const files::FileUrl& document) {
    std::string message = "The library “" + printable(document.path()) + "” is open in another program";
    if (const auto process = files::FileLock::holder(lockFileOf(document)))
        message += " (process " + std::to_string(*process) + ")";
    return message + ".";
}

files::FileLock lockDocument(const files::FileUrl& document) {
    if (auto lock = files::FileLock::tryLock(lockFileOf(document))) return *std::move(lock);
    throw std::runtime_error(lockedMessage(document));
}

} // namespace lumisort::app
