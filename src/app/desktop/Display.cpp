#include "app/desktop/Display.h"

#include "app/commandline/ExitStatus.h"

#include <unistd.h>

#include <QFileInfo>
#include <QLocale>
#include <QQuickWindow>
#include <clocale>
#include <cstdio>

namespace lumisort::app {

namespace {

bool hasSessionBus() {
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

void setUnlessSet(const char* variable, const char* value) {
    if (!qEnvironmentVariableIsSet(variable)) qputenv(variable, value);
}

/// While the screen is opened: what Qt says of a missing one is for its own developers.
void handleStartupMessage(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtFatalMsg) {
        std::fputs(
            "lumisort: No window can be opened: no screen answers. DISPLAY or WAYLAND_DISPLAY must name "
            "one; the commands of `lumisort --help` need none.\n",
            stderr);
        _exit(static_cast<int>(ExitStatus::failed));
    }
    if (type == QtCriticalMsg) std::fprintf(stderr, "lumisort: %s\n", qPrintable(message));
}

} // namespace

std::unique_ptr<QGuiApplication> openDisplay(Screen screen) {
    static char name[] = "lumisort";
    static char* arguments[] = {name, nullptr};
    static int count = 1; // the application keeps a reference to all three

    if (screen == Screen::none) {
        setUnlessSet("QT_QPA_PLATFORM", "offscreen");
        setUnlessSet("QT_QUICK_BACKEND", "software");
    } else if (hasSessionBus()) {
        // The desktop's own file dialogs come through its portal. Without a bus to ask, Qt has its own.
        setUnlessSet("QT_QPA_PLATFORMTHEME", "xdgdesktopportal");
    }
    QGuiApplication::setApplicationName(QStringLiteral("Lumisort"));
    QGuiApplication::setApplicationVersion(QStringLiteral(LUMISORT_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("lumisort"));
    QGuiApplication::setQuitOnLastWindowClosed(false); // the library is written first
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));

    // Drawn by the font's own hints, sharp at the sizes of a desktop, and before the first frame without a
    // distance field for every letter.
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);

    const auto before = qInstallMessageHandler(handleStartupMessage);
    auto application = std::make_unique<QGuiApplication>(count, arguments);
    qInstallMessageHandler(before);
    // Qt takes the user's locale over; numbers in files are written with a point everywhere.
    std::setlocale(LC_NUMERIC, "C");
    return application;
}

} // namespace lumisort::app
