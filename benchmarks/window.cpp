// The library's window over a large library: what the main thread does for it, and how long at a time.
//
//   QT_QPA_PLATFORM=offscreen benchmark-window PHOTO [photos]     100000 links to one small photo
//
// Beside each figure stands what the same window costs with forty photos: what is left is the size's doing.

#include "library/LibraryStorage.h"
#include "library/ThumbnailStore.h"
#include "model/LibraryModel.h"
#include "platform/images/Decoder.h"
#include "review/LibraryWindow.h"
#include "ui/IconProvider.h"
#include "ui/ThumbnailProvider.h"

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace lumisort;

const QByteArray scene = R"(
import QtQuick
import QtQuick.Window
import Lumisort.Review
Window {
    id: root
    property LibraryWindow library
    width: 1250
    height: 820
    MainView { anchors.fill: parent; window: root.library }
})";

double residentMiB() {
    std::ifstream status("/proc/self/status");
    std::string word;
    double kibibytes = 0;
    while (status >> word)
        if (word == "VmRSS:" && status >> kibibytes) break;
    return kibibytes / 1024;
}

/// How long the event loop was at work each time before it slept again, in milliseconds.
class Slices {
public:
    Slices() {
        auto* loop = QAbstractEventDispatcher::instance();
        QObject::connect(loop, &QAbstractEventDispatcher::awake, &guard_, [this] { timer_.start(); });
        QObject::connect(loop, &QAbstractEventDispatcher::aboutToBlock, &guard_, [this] { end(); });
        timer_.start();
    }
    void end() {
        if (timer_.isValid()) all_.push_back(static_cast<double>(timer_.nsecsElapsed()) / 1e6);
        timer_.invalidate();
    }
    double sum() const { return std::accumulate(all_.begin(), all_.end(), 0.0); }
    double most() const { return all_.empty() ? 0 : std::ranges::max(all_); }

private:
    QObject guard_;
    QElapsedTimer timer_;
    std::vector<double> all_;
};

/// In a loop of its own: outside of one, what views put away is never deleted.
template <class Done>
void waitUntil(Done&& done) {
    if (done()) return;
    QEventLoop loop;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &loop,
                     [&] {
                         if (done()) loop.quit();
                     });
    loop.exec();
}

QQuickItem* findGrid(QQuickItem* item) {
    if (item->inherits("QQuickFlickable") && item->property("cellHeight").isValid()) return item;
    for (auto* child : item->childItems())
        if (auto* found = findGrid(child)) return found;
    return nullptr;
}

library::LibraryContents librarySession(const fs::path& photo, const fs::path& folder, int count) {
    constexpr int linksPerFile = 50'000; // file systems allow some 65,000
    library::LibraryContents session{.folders = {files::FileUrl::fromPath(folder.string() + '/')}};
    fs::path source;
    for (int i = 0; i < count; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "IMG_%06d.jpg", i);
        if (i % linksPerFile == 0)
            fs::copy_file(photo, source = folder / name);
        else
            fs::create_hard_link(source, folder / name);
        session.photos.push_back({.url = files::FileUrl::fromPath((folder / name).string()),
                                  .bytes = static_cast<std::int64_t>(fs::file_size(photo))});
    }
    return session;
}

struct Figures {
    double startWork = 0, startSlice = 0, scrollP95 = 0, scrollMost = 0, mark = 0, footprint = 0;
    std::size_t frames = 0;
};

Figures measure(const fs::path& photo, int count) {
    char pattern[] = "/tmp/lumisort-window-XXXXXX";
    const fs::path folder = mkdtemp(pattern);
    const auto document = files::FileUrl::fromPath((folder / "library.json").string());
    library::writeLibrary(files::FileSystem::real(), librarySession(photo, folder, count), document);
    Figures figures;
    {
        Slices slices;
        library::ThumbnailStore thumbnails;
        model::LibraryModel model(document);
        review::LibraryWindow state(model);
        QQmlApplicationEngine engine;
        engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
        engine.addImageProvider(QStringLiteral("icon"), new ui::IconProvider);
        engine.addImageProvider(QStringLiteral("thumbnail"), new ui::ThumbnailProvider(thumbnails));
        engine.setInitialProperties({{QStringLiteral("library"), QVariant::fromValue(&state)}});
        engine.loadData(scene);
        auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().at(0));
        int frames = 0;
        QObject::connect(window, &QQuickWindow::frameSwapped, window, [&] { ++frames; });
        window->show();
        waitUntil([&] { return model.library().availableCount() == count && frames > 0; });
        const int seen = frames;
        waitUntil([&] { return frames > seen; });
        slices.end();
        figures.startWork = slices.sum();
        figures.startSlice = slices.most();

        auto* grid = findGrid(window->contentItem());
        std::vector<double> delays;
        const double height = grid->height(), end = grid->property("contentHeight").toDouble() - height;
        for (double y = 0; y < end; y += height) {
            QElapsedTimer timer;
            timer.start();
            grid->setProperty("contentY", y);
            const int before = frames;
            window->update();
            waitUntil([&] { return frames > before; });
            delays.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
            if (delays.size() % 100 == 0) figures.footprint = std::max(figures.footprint, residentMiB());
        }
        figures.footprint = std::max(figures.footprint, residentMiB());
        figures.frames = delays.size();
        std::ranges::sort(delays);
        if (!delays.empty()) {
            figures.scrollP95 = delays[delays.size() * 95 / 100];
            figures.scrollMost = delays.back();
        }
        grid->setProperty("contentY", 0);

        std::vector<double> marks;
        for (int i = 0; i < 20; ++i) {
            QElapsedTimer timer;
            timer.start();
            bool marked = false;
            const auto hearing = QObject::connect(&model.library(), &model::Library::countsChanged, window,
                                                  [&] { marked = true; });
            state.marks()->mark({model.library().photos()[0]}, i % 2 == 0 ? library::ReviewDecision::keep
                                                                          : library::ReviewDecision::cleanup);
            waitUntil([&] { return marked; });
            const int before = frames;
            window->update();
            waitUntil([&] { return frames > before; });
            marks.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
            QObject::disconnect(hearing);
        }
        figures.mark = std::ranges::max(marks);
        waitUntil([task = model.flush()] { return task.isFinished(); });
        window->close();
    }
    fs::remove_all(folder);
    return figures;
}

void row(const char* what, double large, double small, const char* target) {
    std::printf("| %s | %.1f | %.1f | %.2f | %s |\n", what, large, small, large / small, target);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) return std::fprintf(stderr, "usage: %s PHOTO [photos]\n", argv[0]), 2;
    images::initialiseDecoder();
    const QGuiApplication application(argc, argv);
    const int count = argc > 2 ? std::stoi(argv[2]) : 100'000;
    constexpr int few = 40; // a little more than one screen
    measure(argv[1], few);  // loads what is loaded once
    const auto small = measure(argv[1], few);
    const auto large = measure(argv[1], count);
    std::printf("| %d photos, ms | large | %d photos | ratio | at most |\n|---|---|---|---|---|\n", count,
                few);
    row("start: main-thread work", large.startWork, small.startWork, "1500");
    row("start: longest slice", large.startSlice, small.startSlice, "50");
    row("scroll a screen per frame: p95", large.scrollP95, small.scrollP95, "16");
    row("scroll a screen per frame: longest", large.scrollMost, small.scrollMost, "");
    row("mark, call to frame: longest of 20", large.mark, small.mark, "50");
    row("resident while scrolling, MiB", large.footprint, small.footprint, "400");
    std::printf("\n%zu screens\n", large.frames);
}
