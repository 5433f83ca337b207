#include "app/desktop/StartDesktop.h"

#include "app/commandline/DocumentLock.h"
#include "app/desktop/Desktop.h"
#include "app/desktop/Display.h"
#include "app/desktop/ProblemWindow.h"
#include "app/desktop/Screenshots.h"
#include "app/desktop/SelfTest.h"
#include "app/desktop/SingleInstance.h"
#include "app/diagnostics/PerformanceDiagnostics.h"
#include "ui/ColourScheme.h"

#include <ctime>
#include <iostream>

namespace lumisort::app {

namespace {

/// Has a function run on the main thread, soon; called from any thread.
void post(std::function<void()> function) {
    QMetaObject::invokeMethod(qGuiApp, std::move(function), Qt::QueuedConnection);
}

std::unique_ptr<PerformanceDiagnostics> wantedDiagnostics() {
    const auto output = qgetenv("LUMISORT_PERF_OUTPUT");
    if (output.isEmpty()) return nullptr;
    return std::make_unique<PerformanceDiagnostics>(
        files::FileUrl::fromPath(output.toStdString()).path(),
        PerformanceSampler::Dependencies{
            .system = files::FileSystem::real(), .clock = time::Clock::system(), .post = post});
}

void setTheme(const std::string& theme) {
    if (theme != "auto")
        ui::ColourScheme::shared().choose(theme == "dark" ? ui::ColourScheme::Dark : ui::ColourScheme::Light);
}

/// Prints the processor time that was used, in milliseconds, once there is something to see.
void leaveAtFirstFrame(Desktop& desktop) {
    const auto leave = [&desktop] {
        timespec time{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        std::cout << static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6
                  << std::endl;
        desktop.lifecycle().quit();
    };
    QObject::connect(&desktop.window(), &QQuickWindow::frameSwapped, &desktop, leave,
                     Qt::SingleShotConnection);
}

} // namespace

ExitStatus startDesktop(const DesktopOptions& options, const std::stop_token& interrupted) {
    const auto activationToken = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
    const auto application = openDisplay(options.isTour() ? Screen::none : Screen::real);
    setTheme(options.theme);
    if (options.selfTest) return runSelfTest(interrupted);
    if (!options.screenshots.empty()) return takeScreenshots(options, interrupted);

    const auto document = documentAt(options.library);
    std::unique_ptr<SingleInstance> instance;
    try {
        instance = SingleInstance::claim(document, {activationToken, options.folders, options.photos});
    } catch (
        const std::exception& problem) { // a program that holds the lock, a folder that cannot be written
        std::cerr << "lumisort: " << problem.what() << std::endl;
        showProblem(problem.what(), interrupted);
        return ExitStatus::failed;
    }
    if (!instance) return ExitStatus::done;
    const auto diagnostics = wantedDiagnostics();

    Desktop desktop(document, [] { QCoreApplication::exit(static_cast<int>(ExitStatus::done)); });
    QObject::connect(instance.get(), &SingleInstance::startedAgain, &desktop,
                     [&desktop](const StartRequest& request) {
                         desktop.comeForward(request.activationToken);
                         desktop.model().folderImport().importFolders(request.folders);
                         for (const auto& photo : request.photos) desktop.editors().show(photo);
                     });
    QObject::connect(&desktop.lifecycle(), &Lifecycle::quitting, instance.get(),
                     &SingleInstance::refuseRequests);
    QObject::connect(&desktop.engine(), &QQmlEngine::quit, &desktop.lifecycle(), &Lifecycle::quit);
    desktop.show();
    desktop.model().folderImport().importFolders(options.folders);
    for (const auto& photo : options.photos) desktop.editors().show(photo);
    if (options.firstFrame) leaveAtFirstFrame(desktop);
    const std::stop_callback onInterrupt(interrupted, [&desktop] {
        QMetaObject::invokeMethod(&desktop.lifecycle(), &Lifecycle::quit, Qt::QueuedConnection);
    });
    return static_cast<ExitStatus>(QCoreApplication::exec());
}

} // namespace lumisort::app
