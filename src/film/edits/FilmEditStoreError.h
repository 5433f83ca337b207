#pragma once

#include <stdexcept>

namespace lumisort::film {

/// Why the edit store refuses; `what()` is the text for the user.
class FilmEditStoreError : public std::runtime_error {
public:
    enum class Kind {
        sourceChanged,     ///< the photo is not the file that was opened
        unsupportedFormat, ///< the document is of another version
    };

    explicit FilmEditStoreError(Kind kind) : std::runtime_error(message(kind)), kind_(kind) {}
    Kind kind() const { return kind_; }

private:
    static const char* message(Kind kind) {
        return kind == Kind::sourceChanged
                   ? "This photo changed on disk. Reload it before making further adjustments or exporting."
                   : "Saved film adjustments use an unsupported format.";
    }

    Kind kind_;
};

} // namespace lumisort::film
