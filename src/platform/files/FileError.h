#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace lumisort::files {

/// A file operation failed. `what()` is a whole sentence that names the file, fit to be shown:
/// "Could not open “/photos/a.jpg”: Permission denied". Control characters and bytes that are no UTF-8 are
/// shown as \x0A there, so that it is one line of valid text for any path.
class FileError : public std::runtime_error {
public:
    /// `action` is the verb phrase behind "Could not", which goes on with the file ("open", "read the
    /// attributes of") or ends in "the folder"; `code` an errno value.
    FileError(std::string_view action, std::string path, int code);
    /// For failures that are no errno: `reason` is a short sentence without a full stop.
    FileError(std::string_view action, std::string path, std::string reason);

    const std::string& path() const { return path_; }
    /// The errno value, 0 when the failure was none.
    int code() const { return code_; }
    /// The message without the file's name, for lines that already start with it:
    /// "Could not open the file: Permission denied".
    const std::string& description() const { return description_; }
    /// Nothing is at the path, or one of the folders above it is missing or none.
    bool isMissing() const;

private:
    std::string path_;
    int code_ = 0;
    std::string description_;
};

} // namespace lumisort::files
