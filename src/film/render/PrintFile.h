#pragma once

#include "platform/files/FileSystem.h"
#include "platform/files/FileUrl.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>

namespace lumisort::film {

/// A print that is being written: a hidden file beside the destination, moved into place when it is whole and
/// removed otherwise. Failures are FileErrors that name the destination or its folder, which the user knows,
/// and not the hidden file.
class PrintFile {
public:
    /// `extension` is that of the hidden file, with its point.
    PrintFile(files::FileSystem& system, files::FileUrl destination, const char* extension);
    ~PrintFile();
    PrintFile(const PrintFile&) = delete;
    PrintFile& operator=(const PrintFile&) = delete;

    void write(std::span<const std::byte> bytes);
    /// Brings the file to the medium and gives it its name. Throws FilmRenderError (outputExists) where
    /// another file has the name by now.
    void finish();

private:
    files::FileSystem& system_;
    const files::FileUrl destination_;
    const std::string path_;
    std::unique_ptr<files::OpenFile> file_; ///< null after the move
};

} // namespace lumisort::film
