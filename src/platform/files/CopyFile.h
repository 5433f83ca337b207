#pragma once

#include "platform/files/Descriptor.h"

#include <stop_token>
#include <string>

namespace lumisort::files {

/// FileSystem::copy on the machine's file system.
void copyFile(const std::string& from, const std::string& to, const std::stop_token& stop);

/// The ways in which contents travel from one open file to another, the fastest first.
enum class CopyMethod { sharedBlocks, insideKernel, throughMemory };

struct CopyJob {
    const Descriptor& source;
    const Descriptor& target;
    const std::string& from; ///< for messages, as is `to`
    const std::string& to;
    FileStatus before; ///< the source's, when the copy began
};

/// Copies all contents from the files' positions on, beginning with `first` and going on with the methods
/// behind it where the file systems refuse. Throws FileError, also when the source changes meanwhile (one
/// that grows faster than it is copied would never end), or tasks::Cancelled.
void copyContents(const CopyJob& job, CopyMethod first, const std::stop_token& stop);

} // namespace lumisort::files
