#include "platform/files/DoubleBufferedFile.h"

#include <algorithm>
#include <span>
#include <utility>

namespace lumisort::files {

DoubleBufferedFile::DoubleBufferedFile(FileSystem& system, std::string path, std::string hiddenPath)
    : system_(system), path_(std::move(path)), hiddenPath_(std::move(hiddenPath)) {}

DoubleBufferedFile::~DoubleBufferedFile() {
    if (!hidden_) return;
    try {
        system_.remove(hiddenPath_);
    } catch (...) { // NOLINT(bugprone-empty-catch): a leftover hidden file harms nothing
    }
}

void DoubleBufferedFile::save(std::string_view text, std::size_t unchanged) {
    if (!hidden_) {
        hidden_ = system_.create(hiddenPath_);
        hiddenMatches_ = 0;
    }
    hiddenMatches_ = std::min(hiddenMatches_, unchanged);
    hidden_->seek(static_cast<std::int64_t>(hiddenMatches_));
    hidden_->write(std::as_bytes(std::span(text.substr(hiddenMatches_))));
    hidden_->flush();

    canExchange_ = canExchange_ && (!shown_ || system_.exchange(hiddenPath_, path_));
    if (shown_ && canExchange_) {
        std::swap(shown_, hidden_);
        hiddenMatches_ = unchanged;
    } else {
        system_.replace(hiddenPath_, path_);
        shown_ = std::move(hidden_);
    }
    system_.flushDirectory(path_.substr(0, std::max<std::size_t>(1, path_.rfind('/'))));
}

} // namespace lumisort::files
