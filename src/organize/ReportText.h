#pragma once

#include "organize/OrganizeReport.h"

#include <cstddef>

namespace lumisort::organize {

/// A report's JSON text that grows with the run. The lists come last, so that one more entry costs its own
/// length and, for a copy, moving the failures along; the rest of the text stays as it is.
class ReportText {
public:
    explicit ReportText(const OrganizeReport& start);

    // Both return how many bytes at the start of the text stayed the same.
    std::size_t addCopied(const OrganizeItem& item);
    std::size_t addFailure(std::string_view line);

    /// Whole JSON at any time.
    const std::string& text() const { return text_; }

private:
    std::string text_;
    std::size_t copiedStart_;
    std::size_t copiedEnd_;
    bool hasFailures_ = false;
};

} // namespace lumisort::organize
