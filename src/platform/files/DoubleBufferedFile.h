#pragma once

#include "platform/files/FileSystem.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace lumisort::files {

/// A text file that grows at its end, step by step, and is the whole text of one step at every instant, also
/// after a crash.
///
/// Writing the whole text anew for each step would cost the square of its length. So there are two files: the
/// one under the name, and a hidden one beside it that is a step behind. A step writes to the hidden one only
/// what it lacks, flushes it, exchanges the two names and flushes the folder: the cost is what two steps
/// changed, and two flushes. Where the file system cannot exchange names (exFAT, most network ones), each
/// step writes a new file in full and renames it over the old one.
///
/// Used by one thread. The destructor removes the hidden file; a process that is killed leaves it behind.
class DoubleBufferedFile {
public:
    /// Touches nothing yet. The first save replaces a file at `path`; nothing must be at `hiddenPath`, a name
    /// in the same folder.
    DoubleBufferedFile(FileSystem& system, std::string path, std::string hiddenPath);
    ~DoubleBufferedFile();
    DoubleBufferedFile(const DoubleBufferedFile&) = delete;
    DoubleBufferedFile& operator=(const DoubleBufferedFile&) = delete;

    /// Makes the file hold `text`, on the medium, when it returns. The first `unchanged` bytes are those of
    /// the last step that succeeded; `text` is no shorter than it. Throws FileError; the file then holds the
    /// last step, or, where only the flush of the folder failed, this one.
    void save(std::string_view text, std::size_t unchanged);

private:
    FileSystem& system_;
    std::string path_;
    std::string hiddenPath_;
    bool canExchange_ = true;
    std::unique_ptr<OpenFile> shown_;
    std::unique_ptr<OpenFile> hidden_;
    std::size_t hiddenMatches_ = 0; ///< bytes at the hidden file's start that the shown one has too
};

} // namespace lumisort::files
