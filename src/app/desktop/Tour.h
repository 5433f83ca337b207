#pragma once

#include "app/desktop/Pages.h"

#include <QImage>
#include <functional>
#include <span>
#include <stop_token>

namespace lumisort::app {

/// What is seen at a page: the window that opened last.
using Visit = std::function<void(const Page& page, const QImage& picture)>;

/// Shows the window and one page after the other, each until it has settled: no task of the library under
/// way, no picture still to come, nothing moving. Throws tasks::Cancelled when stopped.
void tour(Desktop& desktop, std::span<const Page> pages, const Visit& visit, const std::stop_token& stop);

} // namespace lumisort::app
