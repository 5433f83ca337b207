#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace lumisort::json {

/// A JSON text is not what its reader expects. `what()` says where and what, without the file's name:
/// "photos[3].bytes: a whole number is expected". The way to the place grows from inside out while the
/// exception passes the readers of the objects and arrays around it.
class FormatError : public std::runtime_error {
public:
    explicit FormatError(std::string problem);

    const char* what() const noexcept override { return whole_.c_str(); }

    /// The error as seen from outside the field `key` or the element `index`.
    FormatError inField(std::string_view key) const;
    FormatError inElement(std::size_t index) const;

private:
    FormatError(std::string place, std::string problem);

    std::string place_;
    std::string problem_;
    std::string whole_;
};

} // namespace lumisort::json
