#pragma once

#include "platform/files/FileSystem.h"
#include "platform/json/Reader.h"

#include <cstdint>
#include <functional>
#include <string>

namespace lumisort::json {

/// Largest document that is read; the parser indexes with 32 bits.
inline constexpr std::int64_t maxDocumentBytes = 0xFFFF'FFFF;

/// Reads the file at `path`, a JSON text whose root is an object or an array. Throws files::FileError; where
/// the contents were the matter it says where and why, with code 0:
/// "Could not read “/a/library.json”: photos[3].bytes: a whole number is expected".
void readDocument(files::FileSystem& system, const std::string& path, const std::function<void(Value)>& read);

} // namespace lumisort::json
