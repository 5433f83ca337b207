#include "platform/json/FormatError.h"

#include <algorithm>

namespace lumisort::json {

namespace {

bool isWord(std::string_view key) {
    return !key.empty() && std::ranges::all_of(key, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    });
}

std::string joined(const std::string& step, const std::string& place) {
    if (place.empty() || place.front() == '[') return step + place;
    return step + '.' + place;
}

} // namespace

FormatError::FormatError(std::string problem) : FormatError({}, std::move(problem)) {}

FormatError::FormatError(std::string place, std::string problem)
    : std::runtime_error(problem), place_(std::move(place)), problem_(std::move(problem)),
      whole_(place_.empty() ? problem_ : place_ + ": " + problem_) {}

FormatError FormatError::inField(std::string_view key) const {
    const std::string name(key);
    return {joined(isWord(key) ? name : "[\"" + name + "\"]", place_), problem_};
}

FormatError FormatError::inElement(std::size_t index) const {
    return {joined('[' + std::to_string(index) + ']', place_), problem_};
}

} // namespace lumisort::json
