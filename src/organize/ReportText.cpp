#include "organize/ReportText.h"

#include "organize/ItemJson.h"

namespace lumisort::organize {

namespace {

constexpr std::string_view end = "]}";

} // namespace

ReportText::ReportText(const OrganizeReport& start) : text_("{") {
    if (start.logURL)
        text_ += "\"logURL\":" + json::toText([&](json::Writer& out) { out.url(*start.logURL); }) + ',';
    if (start.alreadyThere > 0) text_ += "\"alreadyThere\":" + std::to_string(start.alreadyThere) + ',';
    text_ += "\"duplicates\":" + std::to_string(start.duplicates) + ",\"copied\":[";
    copiedStart_ = copiedEnd_ = text_.size();
    text_ += "],\"failures\":[";
    text_ += end;
    for (const auto& item : start.copied) addCopied(item);
    for (const auto& line : start.failures) addFailure(line);
}

std::size_t ReportText::addCopied(const OrganizeItem& item) {
    const std::size_t unchanged = copiedEnd_;
    std::string entry = copiedEnd_ == copiedStart_ ? "" : ",";
    entry += json::toText([&](json::Writer& out) { writeItem(out, item); });
    text_.insert(copiedEnd_, entry);
    copiedEnd_ += entry.size();
    return unchanged;
}

std::size_t ReportText::addFailure(std::string_view line) {
    text_.resize(text_.size() - end.size());
    const std::size_t unchanged = text_.size();
    if (hasFailures_) text_ += ',';
    hasFailures_ = true;
    text_ += json::toText([&](json::Writer& out) { out.text(line); });
    text_ += end;
    return unchanged;
}

} // namespace lumisort::organize
