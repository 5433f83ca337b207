#pragma once

#include "organize/ReportText.h"
#include "platform/files/DoubleBufferedFile.h"

namespace lumisort::organize {

/// A run's report and its file, which is brought up to date by `save` alone. Used by one thread.
class ReportFile {
public:
    /// The report as it is when the run begins or goes on; touches nothing on disk. The first save replaces
    /// the report of the run that goes on.
    ReportFile(files::FileSystem& system, OrganizeReport start);

    void addCopied(const OrganizeItem& item);
    void addFailure(std::string line);

    /// The report is on the medium when this returns; where nothing was added, it was so before. Throws
    /// FileError; the file then holds what the last save wrote.
    void save();

    const OrganizeReport& report() const { return report_; }

private:
    OrganizeReport report_;
    ReportText text_;
    files::DoubleBufferedFile file_;
    std::size_t unchanged_ = 0; ///< bytes at the start of the text that the last save wrote too
};

} // namespace lumisort::organize
