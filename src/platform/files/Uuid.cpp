#include "platform/files/Uuid.h"

#include <sys/random.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace lumisort::files {

std::string randomUuid() {
    std::array<unsigned char, 16> bytes{};
    // So few bytes come whole or not at all.
    while (getrandom(bytes.data(), bytes.size(), 0) < 0)
        if (errno != EINTR) throw std::system_error(errno, std::generic_category(), "getrandom");
    bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0F) | 0x40); // version 4
    bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3F) | 0x80); // variant of RFC 4122

    static constexpr char hex[] = "0123456789ABCDEF";
    std::string text;
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        if (index == 4 || index == 6 || index == 8 || index == 10) text += '-';
        text += {hex[bytes[index] >> 4], hex[bytes[index] & 15]};
    }
    return text;
}

} // namespace lumisort::files
