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

void ChecksumList::begin(const std::string& lines, const std::string& hidden) {
    const auto temporary = folder_ + "/" + hidden;
    file_ = system_.create(temporary);
    file_->write(std::as_bytes(std::span(lines)));
    file_->flush();
    system_.replace(temporary, folder_ + "/" + std::string(checksumFileName));
    system_.flushDirectory(folder_);
    end_ = std::ssize(lines);
}

void ChecksumList::add(std::string_view digest, std::string_view path) {
    pending_ += checksumLine(digest, path);
    const auto list = folder_ + "/" + std::string(checksumFileName);
    try {
        if (!file_) file_ = system_.create(list);
        file_->seek(end_);
        file_->write(std::as_bytes(std::span(pending_)));
        file_->flush();
        if (end_ == 0) system_.flushDirectory(folder_);
    } catch (const files::FileError& error) {
        if (error.path() == list) throw;
        throw files::FileError("write", list, error.code());
    }
    end_ += std::ssize(pending_);
    pending_.clear();
}

} // namespace lumisort::organize
