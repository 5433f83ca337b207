// The running library under load: how long the main thread keeps its user waiting.
//
//   benchmark-library_model scan CORPUS [photos]     near-duplicates of 2000 copies of the corpus' small
//   JPEGs benchmark-library_model library [photos]         100000 empty files, half of them marked
//
// The delays are those of the program's own diagnostics; beside them stand the same delays while four bare
// loops keep the processor as busy. Inspections stand beside a bare loop of statx.

#include "app/diagnostics/PerformanceDiagnostics.h"
#include "library/LibraryStorage.h"
#include "model/LibraryModel.h"
#include "platform/images/Decoder.h"
#include "platform/json/Document.h"
#include "review/WindowState.h"

#include <fcntl.h>
#include <malloc.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace lumisort;
using Clock = std::chrono::steady_clock;

double secondsOf(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

/// What a piece of work takes of the clock on the wall and of this thread, in milliseconds.
struct Cost {
    double wall = 0, thread = 0;

    template <class Work>
    static Cost of(Work&& work) {
        const double wall = secondsOf(CLOCK_MONOTONIC), thread = secondsOf(CLOCK_THREAD_CPUTIME_ID);
        work();
        return {(secondsOf(CLOCK_MONOTONIC) - wall) * 1e3,
                (secondsOf(CLOCK_THREAD_CPUTIME_ID) - thread) * 1e3};
    }
};

struct Spread {
    double median = 0, most = 0;

    explicit Spread(std::vector<double> values) {
        std::ranges::sort(values);
        median = values[values.size() / 2];
        most = values.back();
    }
};

template <class Done>
void waitUntil(Done&& done) {
    while (!done()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void wait(const QFuture<void>& task) {
    waitUntil([&] { return task.isFinished(); });
}

/// A value in MiB from /proc/self/smaps_rollup: "Pss" counts shared pages in part.
double pssMiB() {
    std::ifstream rollup("/proc/self/smaps_rollup");
    std::string key;
    double kibibytes = 0;
    while (rollup >> key)
        if (key == "Pss:" && rollup >> kibibytes) break;
    return kibibytes / 1024;
}

// Delays of the main thread.

struct Delays {
    double p95 = 0;  ///< the median of what each second reports
    double most = 0; ///< of all seconds
    std::size_t seconds = 0;
};

/// Runs `work`, which keeps the event loop going, under the diagnostics.
template <class Work>
Delays measured(const fs::path& output, Work&& work) {
    {
        const app::PerformanceDiagnostics diagnostics(
            output.string(), {.system = files::FileSystem::real(),
                              .clock = time::Clock::system(),
                              .post = [](std::function<void()> probe) {
                                  QMetaObject::invokeMethod(qApp, std::move(probe), Qt::QueuedConnection);
                              }});
        work();
    }
    std::vector<double> p95s, maxima;
    json::readDocument(files::FileSystem::real(), output.string(), [&](json::Value records) {
        json::eachElement(records, [&](json::Value record) {
            json::eachField(record, [&](std::string_view key, json::Value value) {
                if (key == "p95MainQueueDelayMS") p95s.push_back(json::number(value));
                if (key == "maxMainQueueDelayMS") maxima.push_back(json::number(value));
            });
        });
    });
    return {Spread(p95s).median, Spread(maxima).most, p95s.size()};
}

std::vector<library::Photo> copiesOfSmallPhotos(const fs::path& corpus, const fs::path& folder,
                                                std::size_t count) {
    constexpr std::uintmax_t least = 20'000, most = 200'000;
    std::vector<fs::path> originals;
    for (const char* part : {"photos", "groups", "orientation"})
        for (const auto& entry : fs::recursive_directory_iterator(corpus / part)) {
            if (!entry.is_regular_file() || entry.path().extension() != ".jpg") continue;
            if (entry.file_size() >= least && entry.file_size() <= most) originals.push_back(entry.path());
        }
    std::ranges::sort(originals);
    std::vector<library::Photo> photos;
    for (std::size_t i = 0; i < count; ++i) {
        const auto copy = folder / (std::to_string(i) + ".jpg");
        fs::copy_file(originals.at(i % originals.size()), copy);
        photos.push_back({.url = files::FileUrl::fromPath(copy.string())});
    }
    return photos;
}

void measureScan(const fs::path& folder, const fs::path& corpus, std::size_t count) {
    const auto photos = copiesOfSmallPhotos(corpus, folder, count);
    model::LibraryModel model(
        files::FileUrl::fromPath((folder / "library.json").string()),
        library::LibraryContents{photos, {files::FileUrl::fromPath(folder.string())}, {}});
    wait(model.availability().refreshing());
    model.matches().setMethod(model::SimilarityMethod::nearDuplicates);
    std::size_t reports = 0;
    QObject::connect(&model.matches(), &model::MatchSearch::progressChanged, [&] { ++reports; });
    double took = 0;
    const auto ours = measured(folder / "performance.json", [&] {
        took = Cost::of([&] { wait(QFuture<void>(model.matches().find())); }).wall;
    });
    std::printf("%zu photos in %.1f s: %d groups (%zu reports)\n", count, took / 1e3,
                model.matches().groupCount(), reports);

    const auto end = Clock::now() + std::chrono::milliseconds(static_cast<int>(took));
    const auto bare = measured(folder / "bare.json", [&] {
        std::vector<std::jthread> loops;
        for (int i = 0; i < 4; ++i)
            loops.emplace_back([end] {
                while (Clock::now() < end) {
                }
            });
        waitUntil([&] { return Clock::now() >= end; });
    });
    std::printf("| delay of the main thread, ms | p95 of a second (median of %zu) | most |\n|---|---|---|\n",
                ours.seconds);
    std::printf("| during the scan | %.2f | %.2f |\n| beside four bare loops | %.2f | %.2f |\n", ours.p95,
                ours.most, bare.p95, bare.most);
    std::printf("| ratio | %.2f | %.2f |\n| at most | 4 | 30 |\n", ours.p95 / bare.p95,
                ours.most / bare.most);
}

// A large library.

constexpr std::size_t filesPerFolder = 1000;

/// Empty files, a thousand in a folder; half of them are marked.
library::LibraryContents generated(const fs::path& folder, std::size_t count) {
    library::LibraryContents session{.folders = {files::FileUrl::fromPath(folder.string())}};
    for (std::size_t i = 0; i < count; ++i) {
        const auto parent = folder / ("Holiday " + std::to_string(i / filesPerFolder));
        if (i % filesPerFolder == 0) fs::create_directories(parent);
        const auto path = (parent / ("IMG_" + std::to_string(1'000'000 + i) + ".JPG")).string();
        close(open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
        session.photos.push_back({.url = files::FileUrl::fromPath(path), .width = 6000, .height = 4000});
        if (i % 2 == 0)
            session.reviewMarks[path] = {
                library::ReviewDecision::keep,
                library::FileStamp::read(files::FileSystem::real(), session.photos.back().url)};
    }
    return session;
}

void bareStatx(const std::vector<library::Photo>& photos) {
    for (const auto& photo : photos) {
        struct statx record{};
        if (statx(AT_FDCWD, photo.url.path().c_str(), AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS | STATX_BTIME,
                  &record) != 0)
            std::abort();
    }
}

void measureInspection(model::LibraryModel& model, review::WindowState& window) {
    int signalled = 0;
    const auto count = [&signalled] { ++signalled; };
    std::vector<QMetaObject::Connection> connections{
        QObject::connect(&model.library(), &model::Library::countsChanged, count),
        QObject::connect(&model.reports(), &model::Reports::added, count),
        QObject::connect(&model.library(), &model::Library::thumbnailRevisionChanged, count),
        QObject::connect(&window.photos(), &QAbstractItemModel::dataChanged, count)};
    double ours = 1e9, bare = 1e9, main = 1e9;
    for (int turn = 0; turn < 5; ++turn) {
        bare = std::min(bare, Cost::of([&] { bareStatx(model.library().photos()); }).wall);
        const auto cost = Cost::of([&] {
            model.availability().refresh();
            wait(model.availability().refreshing());
        });
        ours = std::min(ours, cost.wall);
        main = std::min(main, cost.thread);
    }
    for (const auto& connection : connections) QObject::disconnect(connection);
    std::printf("| inspection of unchanged files, ms | %.1f | %.1f | %.2f × a bare statx loop (%.1f) | 2 |\n",
                ours, main, ours / bare, bare);
    std::printf("| signals that it emitted | %d | | | 0 |\n", signalled);
}

/// Milliseconds of the main thread from the call to the row's signal, for marks of photos all over the list.
void measureMarks(model::LibraryModel& model, review::WindowState& window, const fs::path& document) {
    std::vector<double> wall, thread;
    std::mt19937 random(1);
    const auto written = [&] {
        return fs::exists(document) ? fs::last_write_time(document) : fs::file_time_type();
    };
    const auto before = written();
    for (int i = 0; i < 200; ++i) {
        const auto& photo = model.library().photos()[random() % model.library().photos().size()];
        bool touched = false;
        const auto connection =
            QObject::connect(&window.photos(), &QAbstractItemModel::dataChanged, [&] { touched = true; });
        const auto cost = Cost::of([&] {
            model.marking().mark({photo},
                                 i % 2 ? std::nullopt : std::optional(library::ReviewDecision::cleanup));
            waitUntil([&] { return touched; });
        });
        QObject::disconnect(connection);
        wait(model.marking().pending());
        wall.push_back(cost.wall);
        thread.push_back(cost.thread);
    }
    const Spread walls(wall), threads(thread);
    std::printf("| one mark until its row's signal, ms (median; most) | %.2f; %.2f | %.2f; %.2f | | 5 |\n",
                walls.median, walls.most, threads.median, threads.most);
    const auto save = Cost::of([&] { wait(QFuture<void>(model.flush())); });
    std::printf("| the write that follows, ms | %.0f | %.1f | %s | |\n", save.wall, save.thread,
                written() != before ? "written" : "NOT WRITTEN");
}

void measureSearch(review::WindowState& window) {
    std::vector<double> wall;
    for (const char* text : {"i", "im", "img", "img_", "img_1", "img_10", "img_100", "img_1000", "img_100",
                             "img_10", "99", "999", "99", "9", "", "7", "77", "x", ""})
        wall.push_back(Cost::of([&] { window.setQuery(QString::fromUtf8(text)); }).wall);
    const Spread spread(wall);
    std::printf("| one keystroke of a search, ms (median; most) | %.2f; %.2f | | | 16 |\n", spread.median,
                spread.most);
}

void measureLibrary(const fs::path& folder, std::size_t count) {
    const auto document = folder / "library.json";
    const auto url = files::FileUrl::fromPath(document.string());
    const pid_t child = fork(); // so that its memory is not counted
    if (child == 0) {
        library::writeLibrary(files::FileSystem::real(), generated(folder / "photos", count), url);
        _exit(0);
    }
    int status = 0;
    if (waitpid(child, &status, 0) != child || status != 0) std::abort();

    std::printf(
        "| %zu photos, document of %.0f MB | wall | main thread | ratio | at most |\n|---|---|---|---|---|\n",
        count, static_cast<double>(fs::file_size(document)) / 1e6);
    model::LibraryModel model(url);
    review::WindowState window(model);
    const auto restored = Cost::of([&] { wait(QFuture<void>(model.loading())); });
    std::printf("| restore, ms | %.0f | %.0f | | |\n", restored.wall, restored.thread);
    wait(model.availability().refreshing());
    if (model.library().availableCount() != static_cast<int>(count)) std::abort();
    measureInspection(model, window);
    measureSearch(window);
    measureMarks(model, window, document);
    const double full = pssMiB();
    malloc_trim(0);
    std::ifstream self("/proc/self/status");
    std::string line, peak;
    while (std::getline(self, line))
        if (line.starts_with("VmHWM:")) peak = line.substr(6);
    std::printf("| footprint, MiB | %.0f (%.0f trimmed; peak %.0f) | | | 1024 |\n", full, pssMiB(),
                std::strtod(peak.c_str(), nullptr) / 1024);
}

int usage(const char* program) {
    std::fprintf(stderr, "usage: %s scan CORPUS [photos] | library [photos]\n", program);
    return 2;
}

} // namespace

int main(int argumentCount, char** arguments) {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const QCoreApplication application(argumentCount, arguments);
    const std::string part = argumentCount > 1 ? arguments[1] : "";
    const auto number = [&](int index, std::size_t otherwise) {
        return argumentCount > index ? std::strtoul(arguments[index], nullptr, 10) : otherwise;
    };
    const fs::path folder = fs::temp_directory_path() / ("lumisort-benchmark-" + std::to_string(getpid()));
    fs::create_directories(folder);
    if (part == "scan" && argumentCount > 2) {
        images::initialiseDecoder();
        measureScan(folder, arguments[2], number(3, 2000));
    } else if (part == "library") {
        measureLibrary(folder, number(2, 100'000));
    } else {
        fs::remove_all(folder);
        return usage(arguments[0]);
    }
    fs::remove_all(folder);
    return 0;
}
