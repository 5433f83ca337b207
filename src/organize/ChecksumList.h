#pragma once

#include "platform/files/FileSystem.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace lumisort::organize {

/// The name of the list inside a run's folder.
inline constexpr std::string_view checksumFileName = "SHA256SUMS";

/// One line of the list: the digest, two spaces and the path, as sha256sum (GNU coreutils) writes it: where
/// the path holds a backslash, a line feed or a carriage return, the line starts with a backslash and those
/// are \\, \n and \r. All other bytes stand as they are. Ends in a line feed.
std::string checksumLine(std::string_view digest, std::string_view path);

/// The digests of a run's copies, for `sha256sum -c SHA256SUMS` inside the run's folder. Grows by one line
/// per copy, which is all that is written, and is flushed each time. A power cut or a full disk can leave the
/// last line incomplete. A line that cannot be written is written with the next one. Used by one thread.
class ChecksumList {
public:
    /// Nothing is created before the first line.
    ChecksumList(files::FileSystem& system, std::string folder);

    /// Begins with the lines of an earlier run, in place of the list that is there: written to `hidden` in
    /// the folder first, so that after a crash the old list or the new one is there. Throws FileError.
    void begin(const std::string& lines, const std::string& hidden);

    /// The line is on the medium when this returns. `path` is relative to the folder. Throws FileError.
    void add(std::string_view digest, std::string_view path);

private:
    files::FileSystem& system_;
    std::string folder_;
    std::unique_ptr<files::OpenFile> file_;
    std::int64_t end_ = 0; ///< bytes of the lines that are on the medium
    std::string pending_;  ///< lines that could not be written
};

} // namespace lumisort::organize
