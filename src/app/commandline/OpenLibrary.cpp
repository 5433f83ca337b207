#include "app/commandline/OpenLibrary.h"

#include "app/commandline/DocumentLock.h"
#include "platform/tasks/Cancellation.h"

#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <stdexcept>

namespace lumisort::app {

namespace {

/// How soon an interrupt is noticed.
constexpr std::chrono::milliseconds stopInterval{50};

std::unique_ptr<QCoreApplication> application() {
    static char name[] = "lumisort";
    static char* arguments[] = {name, nullptr};
    static int count = 1; // the application keeps a reference to all three
    return std::make_unique<QCoreApplication>(count, arguments);
}

} // namespace

OpenLibrary::OpenLibrary(const std::string& document, const Dependencies& deps)
    : stop_(deps.stop), document_(documentAt(document)), lock_(lockDocument(document_)),
      application_(application()), model_(std::make_unique<model::LibraryModel>(document_)) {
    if (const auto loaded = result(model_->loading()); !loaded)
        throw std::runtime_error("Could not restore library: " + loaded.error());
    wait(model_->availability().refreshing());
}

void OpenLibrary::runUntil(const QFuture<void>& task, bool stoppable) {
    QEventLoop loop;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &loop, [&] {
        if (stoppable && stop_.stop_requested()) loop.quit();
    });
    watch.start(stopInterval);
    bool finished = false;
    model::whenFinished(task, &loop, [&] {
        finished = true;
        loop.quit();
    });
    if (!finished) loop.exec();
}

void OpenLibrary::wait(const QFuture<void>& task) {
    runUntil(task, true);
    if (!stop_.stop_requested()) return;
    if (model_) runUntil(QFuture<void>(model_->flush()), false);
    throw tasks::Cancelled();
}

void OpenLibrary::close() {
    wait(model_->marking().pending());
    wait(model_->availability().refreshing());
    const auto saved = model_->flush();
    runUntil(QFuture<void>(saved), false);
    if (const auto outcome = saved.result(); !outcome)
        throw std::runtime_error("Could not save library: " + outcome.error());
}

LibraryContents libraryContents(const std::string& document, const Dependencies& deps) {
    const OpenLibrary library(document, deps);
    const auto& found = library.model().library();
    return {found.availablePhotos(), found.reviewMarks()};
}

} // namespace lumisort::app
