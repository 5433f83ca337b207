#include "app/desktop/Tour.h"

#include "platform/tasks/Cancellation.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QQuickItem>
#include <QTimer>
#include <algorithm>

namespace lumisort::app {

namespace {

/// After this a page is taken as it is.
constexpr std::chrono::seconds patience{20};
constexpr std::chrono::milliseconds lookAgain{20};
/// Longer than anything moves.
constexpr std::chrono::milliseconds motion{300};

void runEventLoopFor(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

bool isAtWork(Desktop& desktop) {
    auto& model = desktop.model();
    return desktop.editors().isRendering() || model.task().busy() ||
           !model.marking().pending().isFinished() || !model.availability().refreshing().isFinished();
}

bool isLoading(const QQuickItem& item) {
    constexpr int loading = 2; // Image.Loading
    // Hidden or not: a picture may be shown only when it is there.
    if (item.inherits("QQuickImageBase") && item.property("status").toInt() == loading) return true;
    if (!item.isVisible()) return false;
    return std::ranges::any_of(item.childItems(), [](const QQuickItem* child) { return isLoading(*child); });
}

QList<QQuickWindow*> openWindows() {
    QList<QQuickWindow*> windows;
    for (auto* window : QGuiApplication::topLevelWindows())
        if (auto* quick = qobject_cast<QQuickWindow*>(window); quick && quick->isVisible()) windows += quick;
    return windows;
}

void settle(Desktop& desktop, const std::stop_token& stop) {
    const QDeadlineTimer deadline(patience);
    runEventLoopFor(motion);
    while (!deadline.hasExpired() &&
           (isAtWork(desktop) || std::ranges::any_of(openWindows(), [](const QQuickWindow* window) {
                return isLoading(*window->contentItem());
            }))) {
        tasks::checkCancelled(stop);
        runEventLoopFor(lookAgain);
    }
    runEventLoopFor(motion);
}

} // namespace

void tour(Desktop& desktop, std::span<const Page> pages, const Visit& visit, const std::stop_token& stop) {
    desktop.show();
    settle(desktop, stop);
    for (const auto& page : pages) {
        tasks::checkCancelled(stop);
        const auto before = openWindows();
        page.show(desktop);
        settle(desktop, stop);
        auto* shown = &desktop.window();
        for (auto* window : openWindows())
            if (!before.contains(window)) shown = window;
        visit(page, shown->grabWindow());
        showFirstPage(desktop);
    }
}

} // namespace lumisort::app
