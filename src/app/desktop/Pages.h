#pragma once

#include "app/desktop/Desktop.h"

#include <span>

namespace lumisort::app {

/// A state of the windows that is worth a look. Another page is another line in Pages.cpp.
struct Page {
    const char* name; ///< also of its picture's file
    /// Brings it about, coming from the grid of all photos with nothing selected.
    void (*show)(Desktop& desktop);
};

/// Of a library without photos.
std::span<const Page> pagesOfEmptyLibrary();
/// Of a library with photos, best with one that can be read, and some that look alike.
std::span<const Page> pages();

/// Back to the grid of all photos: sheets and other windows closed, nothing selected or searched for.
void showFirstPage(Desktop& desktop);

} // namespace lumisort::app
