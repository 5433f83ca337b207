#pragma once

#include "platform/files/FileUrl.h"
#include "platform/time/Timestamp.h"

#include <optional>
#include <string>
#include <unordered_map>

namespace lumisort::organize {

/// Chooses the place of each photo of one run, no two in the same, also on volumes that take names for equal
/// that differ in letter case or in their Unicode normalization only. Used by one thread.
class DestinationNames {
public:
    explicit DestinationNames(files::FileUrl root) : root_(std::move(root)) {}

    /// Takes a place inside the root out of the choice.
    void reserve(const files::FileUrl& place);
    /// root / "yyyy/MM" / the source's name: year and month of `captured` on the local clock, "Unknown Date"
    /// without one. Where that place is taken, the stem gets "-2",
    /// "-3" and so on. A stem is cut, between two characters, where the number would make the name
    /// longer than file systems allow.
    files::FileUrl place(const files::FileUrl& source, std::optional<time::Timestamp> captured);

private:
    files::FileUrl root_;
    /// Each place in use as comparisons see it, and the number to try next when it is wanted again: many
    /// photos of one name would otherwise cost the square of their count.
    std::unordered_map<std::string, int> nextNumber_;
};

} // namespace lumisort::organize
