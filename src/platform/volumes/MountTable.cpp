#include "platform/volumes/MountTable.h"

#include <fcntl.h>

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
#include <optional>

namespace lumisort::volumes {

namespace {

bool isOctal(char c) {
    return c >= '0' && c <= '7';
}

/// The kernel writes space, tab, newline and backslash as \ooo.
std::string unescaped(std::string_view field) {
    std::string bytes;
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size() && isOctal(field[i + 1]) && isOctal(field[i + 2]) &&
            isOctal(field[i + 3])) {
            bytes += static_cast<char>((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 +
                                       (field[i + 3] - '0'));
            i += 3;
        } else {
            bytes += field[i];
        }
    }
    return bytes;
}

std::vector<std::string_view> fieldsOf(std::string_view line) {
    std::vector<std::string_view> fields;
    while (!line.empty()) {
        const auto end = std::min(line.find(' '), line.size());
        if (end > 0) fields.push_back(line.substr(0, end));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return fields;
}

bool parseNumber(std::string_view text, unsigned& number) {
    const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), number);
    return code == std::errc() && end == text.data() + text.size();
}

/// "36 35 98:0 /root /point rw,noatime master:1 - ext3 /dev/sda1 rw": the optional fields end at the dash.
std::optional<Mount> parseLine(std::string_view line) {
    const auto fields = fieldsOf(line);
    const auto dash = std::ranges::find(fields, "-");
    if (dash - fields.begin() < 6 || fields.end() - dash < 3) return std::nullopt;
    const auto colon = fields[2].find(':');
    Mount mount;
    if (colon == std::string_view::npos || !parseNumber(fields[2].substr(0, colon), mount.major) ||
        !parseNumber(fields[2].substr(colon + 1), mount.minor))
        return std::nullopt;
    mount.root = unescaped(fields[3]);
    mount.mountPoint = unescaped(fields[4]);
    mount.fileSystem = unescaped(dash[1]);
    mount.source = unescaped(dash[2]);
    return mount;
}

} // namespace

std::vector<Mount> parseMountTable(std::string_view text) {
    std::vector<Mount> mounts;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        if (auto mount = parseLine(text.substr(0, end))) {
            std::erase_if(mounts,
                          [&](const Mount& earlier) { return earlier.mountPoint == mount->mountPoint; });
            mounts.push_back(std::move(*mount));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return mounts;
}

files::Descriptor watchMountTable() {
    return files::Descriptor(open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC));
}

std::vector<Mount> readMountTable() {
    std::ifstream table("/proc/self/mountinfo", std::ios::binary);
    return parseMountTable(std::string(std::istreambuf_iterator<char>(table), {}));
}

} // namespace lumisort::volumes
