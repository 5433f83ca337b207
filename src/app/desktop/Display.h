#pragma once

#include <QGuiApplication>
#include <memory>

namespace lumisort::app {

enum class Screen {
    real,
    none, ///< windows are painted into memory, unless the environment names a platform
};

/// The application object. Where no screen answers, Qt would end the program with a crash report: the program
/// says so in a line of its own instead and exits with ExitStatus::failed.
std::unique_ptr<QGuiApplication> openDisplay(Screen screen);

} // namespace lumisort::app
