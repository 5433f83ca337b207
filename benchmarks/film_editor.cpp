// The film editor over one camera RAW: the engine's renders from a cached source, and the window while a
// slider is dragged, at rest, at actual pixels, and ten of them.
//
//   QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software benchmark-film_editor PHOTO.dng

#include "film/editor/FilmEditorController.h"
#include "film/editor/LocalFilmServices.h"
#include "platform/images/Decoder.h"
#include "ui/IconProvider.h"

#include <libraw/libraw.h>

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace lumisort;
using namespace lumisort::film;

class Clock {
public:
    Clock() { timer_.start(); }
    double milliseconds() const { return static_cast<double>(timer_.nsecsElapsed()) / 1e6; }

private:
    QElapsedTimer timer_;
};

double p95(std::vector<double> values) {
    std::ranges::sort(values);
    return values.empty() ? 0 : values[values.size() * 95 / 100];
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values.empty() ? 0 : values[values.size() / 2];
}

/// Proportional memory of the process: shared pages count by their share.
double footprintMiB() {
    std::ifstream rollup("/proc/self/smaps_rollup");
    std::string word;
    double kibibytes = 0;
    while (rollup >> word)
        if (word == "Pss:" && rollup >> kibibytes) break;
    return kibibytes / 1024;
}

void row(const char* what, double value, const char* unit, const char* target) {
    std::printf("| %s | %.1f %s | %s |\n", what, value, unit, target);
    std::fflush(stdout);
}

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

template <class Work>
double best(int runs, Work work) {
    double least = 1e9;
    for (int i = 0; i < runs; ++i) {
        const Clock clock;
        work(i);
        least = std::min(least, clock.milliseconds());
    }
    return least;
}

constexpr FilmSettings everything{.grain = 1, .halation = 1, .colorSeparation = 1};

void measureEngine(const files::FileUrl& photo) {
    FilmRenderEngine engine;
    engine.preview(photo, everything);
    row("preview from a cached source, everything on, after a change of exposure",
        best(4,
             [&](int run) {
                 auto settings = everything;
                 settings.exposure = 0.1 * (run + 1);
                 engine.preview(photo, settings);
             }),
        "ms", "500");
    row("the same after a change of print exposure",
        best(4,
             [&](int run) {
                 auto settings = everything;
                 settings.exposure = 0.4;
                 settings.printExposure = 0.1 * (run + 1);
                 engine.preview(photo, settings);
             }),
        "ms", "120");
    row("draft of 640 pixels",
        best(4,
             [&](int run) {
                 auto settings = everything;
                 settings.exposure = 0.1 * run;
                 engine.draft(photo, settings, 640);
             }),
        "ms", "");
    const auto detail = [&](int run) {
        engine.detail(photo, everything, {200 * run, 100 * run, 1600, 1000});
    };
    row("first 1600 x 1000 at actual pixels, development among it", best(1, detail), "ms", "");
    row("1600 x 1000 at actual pixels", best(4, detail), "ms", "400");
}

/// LibRaw's own development of the file at the size that a preview asks for.
double libRawMilliseconds(const char* path) {
    return best(2, [path](int) {
        LibRaw raw;
        raw.open_file(path);
        const auto& sizes = raw.imgdata.sizes;
        raw.imgdata.params.half_size = std::max(sizes.width, sizes.height) / 2 >= previewSourceSide ? 1 : 0;
        raw.unpack();
        raw.dcraw_process();
    });
}

/// The services of the program, with the time that the engine takes for each preview.
class TimedServices : public LocalFilmServices {
public:
    using LocalFilmServices::LocalFilmServices;
    QFuture<EditorPreview> preview(files::FileUrl photo, FilmSettings settings,
                                   std::stop_token stop) override {
        const Clock clock;
        auto rendering = LocalFilmServices::preview(std::move(photo), settings, std::move(stop));
        return rendering.then(QtFuture::Launch::Sync, [this, clock](EditorPreview made) {
            previewMilliseconds = clock.milliseconds();
            return made;
        });
    }
    std::atomic<double> previewMilliseconds = 0;
};

struct Editor {
    Editor(FilmEditorController& controller, const files::FileUrl& photo) {
        controller.show(photo);
        window = controller.window(photo);
        model = window->property("editor").value<FilmEditorModel*>();
        QObject::connect(window, &QQuickWindow::afterRendering, model, [this] { ++frames; });
    }
    void waitForFrame() {
        const int before = frames;
        window->update();
        waitUntil([&] { return frames > before; });
    }

    QQuickWindow* window = nullptr;
    FilmEditorModel* model = nullptr;
    int frames = 0;
};

QQuickItem* findCanvas(QQuickItem* item) {
    if (item->inherits("lumisort::film::FilmCanvas")) return item;
    for (auto* child : item->childItems())
        if (auto* found = findCanvas(child)) return found;
    return nullptr;
}

/// Moves a slider sixty times a second. Returns, of each draft on the screen, the time since its change; and
/// how long the main thread kept probes waiting.
void measureDrag(Editor& editor) {
    std::vector<double> drafts, delays;
    std::vector<std::pair<quint64, Clock>> changes; // by revision
    QTimer slider, probe;
    int step = 0;
    QObject::connect(&slider, &QTimer::timeout, editor.model, [&] {
        auto settings = editor.model->settings();
        settings.exposure = 0.05 * (step++ % 20);
        editor.model->change(settings, 0);
        changes.emplace_back(editor.model->revision(), Clock());
    });
    quint64 shown = 0;
    const auto hearing = QObject::connect(editor.model, &FilmEditorModel::draftChanged, editor.model, [&] {
        if (!editor.model->draft().isNull()) shown = editor.model->shownRevision();
    });
    QObject::connect(editor.window, &QQuickWindow::afterRendering, &probe, [&] {
        for (const auto& [revision, clock] : changes)
            if (revision == shown) drafts.push_back(clock.milliseconds());
        shown = 0;
    });
    // A probe asks to be run at once, as an event from outside does.
    std::atomic<bool> done = false;
    std::jthread prober([&] {
        while (!done) {
            std::atomic<bool> answered = false;
            const Clock clock;
            QMetaObject::invokeMethod(&probe, [&] {
                delays.push_back(clock.milliseconds());
                answered = true;
            });
            while (!answered) std::this_thread::sleep_for(std::chrono::microseconds(200));
            std::this_thread::sleep_for(std::chrono::milliseconds(4));
        }
    });
    slider.setTimerType(Qt::PreciseTimer);
    slider.start(16);
    const Clock drag;
    waitUntil([&] { return drag.milliseconds() > 5000; });
    slider.stop();
    done = true;
    waitUntil([&] { return prober.joinable() && drag.milliseconds() > 5100; });
    QObject::disconnect(hearing);
    std::printf("| drafts shown in five seconds | %zu, the last of %d pixels | |\n", drafts.size(),
                editor.model->draft().width());
    row("a slider's move to its draft on the screen, median", median(drafts), "ms", "");
    row("the same, p95", p95(drafts), "ms", "60");
    row("main thread's delay meanwhile, p95", p95(delays), "ms", "16");
    row("the same, longest", std::ranges::max(delays), "ms", "");
    waitUntil([&] { return !editor.model->isRendering(); });
}

void measureRest(Editor& editor, TimedServices& services) {
    std::vector<double> beyond;
    for (int i = 0; i < 5; ++i) {
        auto settings = editor.model->settings();
        settings.exposure = 0.1 * i - 1;
        const Clock clock;
        editor.model->change(settings, 0);
        waitUntil([&] { return !editor.model->isRendering(); });
        editor.waitForFrame();
        beyond.push_back(clock.milliseconds() - FilmEditorModel::debounce.count() -
                         services.previewMilliseconds);
    }
    row("from a slider at rest to the full preview, beyond debounce and engine", median(beyond), "ms", "30");
}

void measurePan(Editor& editor) {
    auto* canvas = findCanvas(editor.window->contentItem());
    editor.window->resize(1600 + 281, 1000);
    editor.waitForFrame();
    const auto arrived = [&](QPointF center) {
        const auto before = editor.model->detail().cacheKey();
        const Clock clock;
        canvas->setProperty("center", center);
        waitUntil(
            [&] { return !editor.model->detail().isNull() && editor.model->detail().cacheKey() != before; });
        editor.waitForFrame();
        return clock.milliseconds();
    };
    canvas->setProperty("actualPixels", true);
    arrived({0.2, 0.2});
    std::vector<double> pans;
    for (const QPointF center : {QPointF(0.6, 0.2), QPointF(0.6, 0.6), QPointF(0.2, 0.6), QPointF(0.9, 0.9)})
        pans.push_back(arrived(center));
    row("pan by a screen of 1600 x 1000 to its rendered pixels, longest", std::ranges::max(pans), "ms",
        "400");
    canvas->setProperty("actualPixels", false);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) return std::fprintf(stderr, "usage: %s PHOTO.dng\n", argv[0]), 2;
    images::initialiseDecoder();
    const QGuiApplication application(argc, argv);
    char pattern[] = "/tmp/lumisort-film-XXXXXX";
    const fs::path folder = mkdtemp(pattern);
    std::printf("| what | measured | at most |\n|---|---|---|\n");
    measureEngine(files::FileUrl::fromPath(argv[1]));
    {
        TimedServices services(files::FileSystem::real(),
                               files::FileUrl::fromPath((folder / "library.json").string()));
        QQmlApplicationEngine engine;
        engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
        engine.addImageProvider(QStringLiteral("icon"), new ui::IconProvider);
        FilmEditorController controller(services, engine);
        std::vector<files::FileUrl> photos;
        for (int i = 0; i < 11; ++i) {
            const auto copy = folder / ("IMG_" + std::to_string(i) + ".dng");
            fs::copy_file(argv[1], copy);
            photos.push_back(files::FileUrl::fromPath(copy.string()));
        }
        const double libRaw = libRawMilliseconds(argv[1]);
        std::vector<double> openings;
        const auto open = [&](const files::FileUrl& photo) {
            const Clock clock;
            auto editor = std::make_unique<Editor>(controller, photo);
            waitUntil([&] { return editor->model->hasPreview(); });
            editor->waitForFrame();
            openings.push_back(clock.milliseconds());
            return editor;
        };
        const auto first = open(photos[0]);
        row("opening an editor to its first picture, optics among it", openings[0], "ms", "");
        auto all = everything;
        first->model->change(all, FilmEditorModel::wholeEdit);
        waitUntil([&] { return !first->model->isRendering(); });
        measureDrag(*first);
        measureRest(*first, services);
        measurePan(*first);
        const double before = footprintMiB();
        openings.clear();
        std::vector<std::unique_ptr<Editor>> others;
        for (std::size_t i = 1; i < photos.size(); ++i) others.push_back(open(photos[i]));
        row("opening another editor to its first picture", median(openings), "ms", "");
        char target[64];
        std::snprintf(target, sizeof target, "1.5 x %.0f of LibRaw + 500 = %.0f", libRaw, 1.5 * libRaw + 500);
        row("the same, longest of ten", std::ranges::max(openings), "ms", target);
        row("memory that each of ten more editors adds", (footprintMiB() - before) / 10, "MiB", "60");
    }
    fs::remove_all(folder);
}
