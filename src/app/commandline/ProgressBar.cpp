#include "app/commandline/ProgressBar.h"

#include "platform/time/Clock.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace lumisort::app {

namespace {

constexpr std::size_t barCells = 24;
constexpr double redrawSeconds = 0.05;
constexpr std::string_view clearLine = "\r\x1b[K";

std::size_t terminalColumns() {
    winsize size{};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

std::string drawn(double fraction, std::string_view text) {
    std::string line;
    std::size_t columns = 0; // the cells are three bytes and one column each
    if (fraction >= 0) {
        const auto filled = static_cast<std::size_t>(std::clamp(fraction, 0.0, 1.0) * barCells);
        for (std::size_t i = 0; i < barCells; ++i) line += i < filled ? "█" : "░";
        line += ' ';
        columns = barCells + 1;
    }
    const std::size_t room = terminalColumns() > columns + 1 ? terminalColumns() - columns - 1 : 0;
    line += text.substr(0, room);
    return line;
}

} // namespace

ProgressBar::ProgressBar() : terminal_(isatty(STDERR_FILENO) == 1) {}
ProgressBar::~ProgressBar() {
    clear();
}

void ProgressBar::show(double fraction, std::string_view text) {
    if (!terminal_) return;
    const double now = time::Clock::system().uptimeSeconds();
    if (visible_ && now - lastDrawn_ < redrawSeconds) return;
    lastDrawn_ = now;
    visible_ = true;
    const std::string line = std::string(clearLine) + drawn(fraction, text);
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
}

void ProgressBar::clear() {
    if (!visible_) return;
    visible_ = false;
    std::fwrite(clearLine.data(), 1, clearLine.size(), stderr);
    std::fflush(stderr);
}

} // namespace lumisort::app
