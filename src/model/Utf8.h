#pragma once

#include <QString>
#include <string_view>

namespace lumisort::model {

/// The text of engines for the interface; bytes that are no UTF-8 show as replacement characters.
inline QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace lumisort::model
