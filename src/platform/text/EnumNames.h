#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace lumisort::text {

/// The names of an enumeration whose values are 0, 1 … N − 1, in their order.
template <class Enum, std::size_t N>
struct EnumNames {
    std::array<std::string_view, N> names;

    constexpr std::string_view of(Enum value) const { return names[static_cast<std::size_t>(value)]; }

    /// The value of exactly this name, letter case included; none for any other text.
    constexpr std::optional<Enum> find(std::string_view name) const {
        for (std::size_t i = 0; i < N; ++i)
            if (names[i] == name) return static_cast<Enum>(i);
        return std::nullopt;
    }
};

} // namespace lumisort::text
