#pragma once

#include "library/Photo.h"
#include "platform/files/FileSystem.h"

#include <stdexcept>
#include <string_view>

namespace lumisort::library {

/// A rename that was refused before anything was touched; `what()` is fit to be shown.
class RenameError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Renames the file of `photo` within its folder to `stem`, white space trimmed, plus its own extension, and
/// returns the photo under its new URL. A name that stays the same touches nothing. This is the only
/// operation of the program that changes a source file.
///
/// Throws RenameError for a name that is empty, starts with a dot, or holds a slash, a colon or a control
/// character, and for a name that is taken; files::FileError when the file system refuses. Nothing has
/// changed then.
Photo renamePhoto(files::FileSystem& system, const Photo& photo, std::string_view stem);

} // namespace lumisort::library
