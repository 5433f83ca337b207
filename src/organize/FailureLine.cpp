#include "organize/FailureLine.h"

namespace lumisort::organize {

std::string failureLine(const files::FileUrl& source, const files::FileError& error) {
    return source.path() + ": " + (error.path() == source.path() ? error.description() : error.what());
}

std::string cancelledLine(const files::FileUrl& source) {
    return source.path() + ": The operation was cancelled.";
}

} // namespace lumisort::organize
