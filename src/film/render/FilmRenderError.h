#pragma once

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>

namespace lumisort::film {

enum class FilmRenderProblem {
    unreadable,
    unsupportedRAW,
    rawRequired,
    tiffRequired,
    imageTooLarge,
    unavailable,
    outputExists,
    sourceOverwrite,
    invalidDestination,
};

/// A photo that could not be rendered or exported, with the message to show.
class FilmRenderError : public std::runtime_error {
public:
    explicit FilmRenderError(FilmRenderProblem problem)
        : std::runtime_error(message(problem)), problem_(problem) {}

    FilmRenderProblem problem() const { return problem_; }

private:
    static const char* message(FilmRenderProblem problem) {
        static constexpr std::array messages{
            "This photo could not be opened.",
            "This RAW format is not supported by this system.",
            "Film requires a RAW photo.",
            "Choose TIFF to preserve the 16-bit film output.",
            "Film supports photos up to 80 megapixels and 32,768 pixels per side.",
            "The film renderer could not finish this photo.",
            "A file already exists at this location. Choose another name.",
            "Choose a different location to preserve the original photo.",
            "Choose a local folder for the exported photo.",
        };
        return messages.at(static_cast<std::size_t>(problem));
    }

    FilmRenderProblem problem_;
};

} // namespace lumisort::film
