// Grouping feature prints around anchors, against a plain loop over all pairs with the same distance.
//
//   benchmark-visual_grouping [prints …]      (20000 and 100000 without an argument)

#include "platform/tasks/Cancellation.h"
#include "similarity/visual/PrintMatching.h"
#include "similarity/visual/VisualScan.h"

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <random>
#include <thread>

namespace {

using namespace lumisort;
using namespace lumisort::similarity;
using Prints = std::vector<std::shared_ptr<const FeaturePrint>>;
using Vector = std::array<double, featurePrintLength>;

constexpr int threads = 2;

/// Prints spread like those of photos. The prints of 114 photos and 1,162 parts of them scatter around a mean
/// of length 0.49 with the variances 0.08 · k^-0.66 · e^(-k ÷ 100) along their k-th principal axis.
class Scatter {
public:
    explicit Scatter(unsigned seed) : random_(seed) {
        for (auto& mirror : mirrors_) {
            double squares = 0;
            for (double& value : mirror) value = gauss_(random_), squares += value * value;
            for (double& value : mirror) value /= std::sqrt(squares);
        }
    }
    /// A random offset; `share` of the variance.
    Vector offset(double share) {
        Vector offset;
        for (std::size_t k = 1; k <= offset.size(); ++k) {
            const auto order = static_cast<double>(k);
            offset[k - 1] =
                std::sqrt(share * 0.08 * std::pow(order, -0.66) * std::exp(-order / 100)) * gauss_(random_);
        }
        return offset;
    }
    std::shared_ptr<const FeaturePrint> print(const Vector& theme, const Vector& scene, const Vector& shot) {
        Vector sum;
        for (std::size_t k = 0; k < sum.size(); ++k) sum[k] = theme[k] + scene[k] + shot[k];
        sum.back() += 0.487;                  // the mean, across the other axes
        for (const auto& mirror : mirrors_) { // turns the axes away from the coordinates
            double along = 0;
            for (std::size_t k = 0; k < sum.size(); ++k) along += sum[k] * mirror[k];
            for (std::size_t k = 0; k < sum.size(); ++k) sum[k] -= 2 * along * mirror[k];
        }
        double squares = 0;
        for (const double value : sum) squares += value * value;
        FeaturePrint print;
        std::ranges::transform(sum, print.values.begin(),
                               [&](double value) { return static_cast<float>(value / std::sqrt(squares)); });
        return std::make_shared<const FeaturePrint>(print);
    }
    int upTo(int most) { return static_cast<int>(random_() % static_cast<unsigned>(most)); }

private:
    std::mt19937 random_;
    std::normal_distribution<double> gauss_;
    std::array<Vector, 3> mirrors_{};
};

/// A library in path order: themes (a day, a place) of some 200 photos, in them scenes, half of which were
/// taken once and the others two to five times.
Prints photographed(int count) {
    Scatter scatter(1);
    Prints prints;
    Vector theme{}, scene{};
    int leftOfTheme = 0, leftOfScene = 0;
    while (std::ssize(prints) < count) {
        if (leftOfTheme-- == 0) theme = scatter.offset(0.35), leftOfTheme = scatter.upTo(400);
        if (leftOfScene-- == 0) {
            scene = scatter.offset(0.65);
            leftOfScene = scatter.upTo(2) ? 1 + scatter.upTo(4) : 0;
        }
        prints.push_back(scatter.print(theme, scene, scatter.offset(0.01 + 0.02 * scatter.upTo(6))));
    }
    return prints;
}

struct Times {
    double wall, processor; ///< seconds; the machine may be busy with other work
};

template <class Work>
Times measure(Work&& work) {
    const auto wall = std::chrono::steady_clock::now();
    const std::clock_t processor = std::clock();
    work();
    return {std::chrono::duration<double>(std::chrono::steady_clock::now() - wall).count(),
            static_cast<double>(std::clock() - processor) / CLOCKS_PER_SEC};
}

double peakMiB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

/// Processor seconds of one distance in a plain loop over pairs that keeps the prints in the nearest caches.
double secondsPerPair(const Prints& prints, std::vector<float>& sample) {
    const std::size_t queries = std::min<std::size_t>(200, prints.size());
    constexpr std::size_t chunk = 128;
    sample.reserve(queries * prints.size());
    const auto times = measure([&] {
        for (std::size_t begin = 0; begin < prints.size(); begin += chunk)
            for (std::size_t query = 0; query < queries; ++query)
                for (std::size_t other = begin; other < std::min(begin + chunk, prints.size()); ++other)
                    sample.push_back(distance(*prints[query * prints.size() / queries], *prints[other]));
    });
    return times.processor / static_cast<double>(sample.size());
}

void printTable(int count) {
    const Prints prints = photographed(count);
    std::vector<float> sample;
    const double pairs = static_cast<double>(count) * (count - 1) / 2;
    const double loop = secondsPerPair(prints, sample) * pairs;
    std::ranges::sort(sample);
    std::printf("\n%d prints, %.3g pairs; distances: 0.1 %% below %.3f, 1 %% below %.3f, median %.3f\n\n",
                count, pairs, sample[sample.size() / 1000], sample[sample.size() / 100],
                sample[sample.size() / 2]);
    sample = {};
    std::printf(
        "| level | anchors | distances, of all pairs | processor s | wall s | all pairs in a plain loop, "
        "processor s | times as fast |\n|---|---|---|---|---|---|---|\n");
    for (const auto level : allSimilarityLevels) {
        std::int64_t distances = 0;
        std::vector<AnchorMatch> matches;
        const auto times = measure([&] {
            matches = matchPrints(prints, featureRadius(level), threads, [](int) {}, {}, &distances);
        });
        int anchors = 0;
        for (int i = 0; i < count; ++i) anchors += matches[static_cast<std::size_t>(i)].anchor == i;
        std::printf("| %s | %d | %.2f %% | %.2f | %.2f | %.1f | %.1f |\n",
                    std::string(storedName(level)).c_str(), anchors,
                    100.0 * static_cast<double>(distances) / pairs, times.processor, times.wall, loop,
                    loop / times.processor);
        std::fflush(stdout);
    }
    std::printf("\npeak of the process so far: %.0f MiB, the prints %.0f MiB of it\n", peakMiB(),
                static_cast<double>(count) * sizeof(FeaturePrint) / 1048576);
}

/// The tree of the general form on the same prints, which hundreds of dimensions leave little to rule out.
void printGeneralForm(int count) {
    const Prints prints = photographed(count);
    std::vector<float> sample;
    const double pairs = static_cast<double>(count) * (count - 1) / 2;
    const double loop = secondsPerPair(prints, sample) * pairs;
    std::atomic<std::int64_t> distances = 0;
    const auto times = measure([&] {
        AnchorGrouping::matches(
            count, featureRadius(SimilarityLevel::balanced), threads,
            [&](int i, int j) {
                distances.fetch_add(1, std::memory_order_relaxed);
                return distance(*prints[static_cast<std::size_t>(i)], *prints[static_cast<std::size_t>(j)]);
            },
            [](int) {}, {});
    });
    std::printf(
        "\nThe general form, %d prints, Balanced: %.1f %% of all pairs, %.2f processor s, %.2f times as "
        "fast as the plain loop\n",
        count, 100.0 * static_cast<double>(distances) / pairs, times.processor, loop / times.processor);
}

/// The longest time from a stop, at any moment of a run, to the end of that run.
void printStopping(const Prints& prints) {
    double longest = 0;
    for (int moment = 0; moment < 20; ++moment) {
        std::stop_source source;
        std::chrono::steady_clock::time_point asked;
        std::jthread stopper([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(7 * moment * moment));
            asked = std::chrono::steady_clock::now();
            source.request_stop();
        });
        try {
            matchPrints(
                prints, featureRadius(SimilarityLevel::balanced), threads, [](int) {}, source.get_token());
        } catch (const tasks::Cancelled&) {
            stopper.join();
            longest = std::max(
                longest, std::chrono::duration<double>(std::chrono::steady_clock::now() - asked).count());
        }
    }
    std::printf("\nLongest time to stop: %.1f ms\n", 1000 * longest);
}

} // namespace

int main(int argc, char** argv) {
    std::vector<int> counts;
    for (int i = 1; i < argc; ++i) counts.push_back(std::atoi(argv[i]));
    if (counts.empty()) counts = {20'000, 100'000};
    std::printf("%d threads\n", threads);
    for (const int count : counts) printTable(count);
    printGeneralForm(5000);
    printStopping(photographed(counts.back()));
}
