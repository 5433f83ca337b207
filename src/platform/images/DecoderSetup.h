#pragma once

namespace lumisort::images {

/// Sets the libraries up with the default options unless initialiseDecoder() was called before. Any thread.
void ensureDecoder();

/// Whether the libraries may print.
bool isVerbose();

} // namespace lumisort::images
