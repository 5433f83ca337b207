#pragma once

#include <stdexcept>

namespace lumisort::images {

/// The decoder could not read a photo. `what()` is one sentence without the file's name.
class ImageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace lumisort::images
