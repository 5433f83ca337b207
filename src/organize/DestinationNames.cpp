#include "organize/DestinationNames.h"

#include "platform/text/Collation.h"
#include "platform/time/LocalTime.h"

#include <algorithm>

namespace lumisort::organize {

namespace {

/// Longest name on the file systems in use, in bytes (NAME_MAX).
constexpr std::size_t maxNameBytes = 255;

std::string padded(int number, std::size_t digits) {
    const std::string text = std::to_string(number);
    return std::string(digits - std::min(digits, text.size()), '0') + text;
}

std::string dateFolder(std::optional<time::Timestamp> captured) {
    if (!captured) return "Unknown Date";
    const time::LocalTime local = time::localTime(*captured);
    return padded(local.year, 4) + "/" + padded(local.month, 2);
}

/// `path` as a volume sees it that ignores case and normalization. Lower case can undo the normal form, so
/// that is made twice.
std::string comparisonKey(const std::string& path) {
    return text::canonicalForm(text::lowerCase(text::canonicalForm(path)));
}

/// At most `bytes` of `text`, not ending inside a UTF-8 character.
std::string_view cut(std::string_view text, std::size_t bytes) {
    if (text.size() <= bytes) return text;
    constexpr int mostContinuationBytes = 3;
    for (int step = 0; step < mostContinuationBytes && bytes > 0; ++step) {
        if ((static_cast<unsigned char>(text[bytes]) & 0xC0) != 0x80) break;
        --bytes;
    }
    return text.substr(0, bytes);
}

std::string numberedName(const files::FileUrl& source, int number) {
    std::string_view stem = source.stem();
    std::string_view extension = source.extension();
    if (extension.size() > maxNameBytes / 2) { // would leave the number no room: not what an extension is
        stem = source.name();
        extension = {};
    }
    std::string ending = "-" + std::to_string(number);
    if (!extension.empty()) ending.append(".").append(extension);
    return std::string(cut(stem, maxNameBytes - ending.size())) + ending;
}

} // namespace

void DestinationNames::reserve(const files::FileUrl& place) {
    nextNumber_.try_emplace(comparisonKey(place.path().substr(root_.path().size() + 1)), 2);
}

files::FileUrl DestinationNames::place(const files::FileUrl& source,
                                       std::optional<time::Timestamp> captured) {
    const std::string folder = dateFolder(captured) + "/";
    const auto taken = [&](const std::string& inside) {
        return nextNumber_.try_emplace(comparisonKey(inside), 2);
    };

    std::string inside = folder + std::string(source.name());
    const auto [entry, isFree] = taken(inside);
    if (!isFree) {
        int& next = entry->second;
        do inside = folder + numberedName(source, next++);
        while (!taken(inside).second);
    }
    return root_.child(inside);
}

} // namespace lumisort::organize
