#include "organize/ReportFile.h"

#include <algorithm>
#include <utility>

namespace lumisort::organize {

namespace {

std::string hiddenPath(const files::FileUrl& logURL) {
    return logURL.parent().child("." + std::string(logURL.name()) + ".partial").path();
}

} // namespace

ReportFile::ReportFile(files::FileSystem& system, OrganizeReport start)
    : report_(std::move(start)), text_(report_),
      file_(system, report_.logURL.value().path(), hiddenPath(*report_.logURL)) {}

void ReportFile::addCopied(const OrganizeItem& item) {
    unchanged_ = std::min(unchanged_, text_.addCopied(item));
    report_.copied.push_back(item);
}

void ReportFile::addFailure(std::string line) {
    unchanged_ = std::min(unchanged_, text_.addFailure(line));
    report_.failures.push_back(std::move(line));
}

void ReportFile::save() {
    if (unchanged_ == text_.text().size()) return;
    file_.save(text_.text(), unchanged_);
    unchanged_ = text_.text().size();
}

} // namespace lumisort::organize
