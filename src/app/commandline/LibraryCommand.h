#pragma once

#include "app/commandline/Command.h"
#include "model/Library.h"

#include <string>
#include <vector>

namespace lumisort::app {

/// What a subcommand of "library" does with the document of that path; "" is the user's own.
using LibraryWork = std::function<ExitStatus(const std::string& document, Dependencies&)>;

/// Adds a subcommand of "library", which also takes the option --library.
using AddLibraryWork = std::function<CLI::App*(const char* name, const char* description, LibraryWork)>;

void addProtectCommands(const AddLibraryWork& add);

/// The library's folders at these paths. Throws std::runtime_error for one that is none.
std::vector<files::FileUrl> foldersOf(const model::Library& library,
                                      const std::vector<std::string>& arguments);

} // namespace lumisort::app
