#pragma once

#include "platform/files/Descriptor.h"

#include <cstdint>
#include <stop_token>
#include <string>

namespace lumisort::files {

/// FileSystem::copy on the machine's file system.
void copyFile(const std::string& from, const std::string& to, const std::stop_token& stop);

/// The ways in which contents travel from one open file to another, the fastest first.
enum class CopyMethod { sharedBlocks, insideKernel, throughMemory };

/// Copies all contents, beginning with `first` and going on with the methods behind it where the file systems
/// refuse; returns the bytes copied. The paths are for messages.
std::int64_t copyContents(const Descriptor& source, const std::string& from, const Descriptor& target,
                          const std::string& to, CopyMethod first, const std::stop_token& stop);

} // namespace lumisort::files
