#pragma once

#include <algorithm>
#include <cmath>

namespace lumisort::film {

/// The size of drafts, which follows the time that they take so that a slider stays fluid.
class DraftSize {
public:
    static constexpr int least = 320, most = 1280;
    /// A change waits for the draft under way, then for its own and for a frame of the screen: 60 ms at most.
    static constexpr double goalMilliseconds = 24;

    /// Long edge of the next draft in pixels.
    int longEdge() const { return longEdge_; }

    /// Takes note of what a draft of `longEdge` pixels took. Time grows with the number of pixels, so the
    /// edge changes by the root of the ratio; limited steps keep one slow draft from blurring the next ten.
    void took(int longEdge, double milliseconds) {
        const double factor =
            std::clamp(std::sqrt(goalMilliseconds / std::max(milliseconds, 1.0)), 0.5, 1.25);
        longEdge_ = std::clamp(static_cast<int>(longEdge * factor), least, most);
    }

private:
    int longEdge_ = 640;
};

} // namespace lumisort::film
