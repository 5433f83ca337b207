#include "organize/ChecksumList.h"

#include <algorithm>

namespace lumisort::organize {

std::string checksumLine(std::string_view digest, std::string_view path) {
    std::string name;
    for (const char c : path) {
        if (c == '\\')
            name += "\\\\";
        else if (c == '\n')
            name += "\\n";
        else if (c == '\r')
            name += "\\r";
        else
            name += c;
    }
    return (name.size() > path.size() ? "\\" : "") + std::string(digest) + "  " + name + "\n";
}

ChecksumList::ChecksumList(files::FileSystem& system, std::string folder)
    : system_(system), folder_(std::move(folder)) {}

void ChecksumList::add(std::string_view digest, std::string_view path) {
    const bool isFirst = !file_;
    if (isFirst) file_ = system_.create(folder_ + "/" + std::string(checksumFileName));
    const std::string line = checksumLine(digest, path);
    file_->write(std::as_bytes(std::span(line)));
    file_->flush();
    if (isFirst) system_.flushDirectory(folder_);
}

} // namespace lumisort::organize
