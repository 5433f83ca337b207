#include "organize/FailureLine.h"

namespace lumisort::organize {
namespace {

constexpr std::string_view cancelled = ": The operation was cancelled.";

} // namespace

std::string failureLine(const files::FileUrl& source, const files::FileError& error) {
    return source.path() + ": " + (error.path() == source.path() ? error.description() : error.what());
}

std::string cancelledLine(const files::FileUrl& source) {
    return source.path() + std::string(cancelled);
}

bool isCancelledLine(std::string_view line) {
    return line.ends_with(cancelled);
}

} // namespace lumisort::organize
