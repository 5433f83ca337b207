// The lookup tables of one film and paper, against the same sums taken plainly with the C library's hypot
// and pow, one number at a time.
//
//   benchmark-film_optics

#include "film/optics/FilmOptics.h"
#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <thread>

namespace {

using namespace lumisort::film;
using Clock = std::chrono::steady_clock;

double wallSeconds() {
    return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
}

/// Processor time: the machine may be busy with other work.
double processorSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// The best of five runs.
template <class Work>
double best(double (*clock)(), const Work& work) {
    double least = 1e9;
    for (int run = 0; run < 5; ++run) {
        const double start = clock();
        work();
        least = std::min(least, clock() - start);
    }
    return least;
}

void row(const char* what, double seconds, const char* beside, double other) {
    std::printf("%-44s %7.1f ms   %-44s %7.1f ms   %5.2fx\n", what, seconds * 1e3, beside, other * 1e3,
                other / seconds);
}

double sink = 0;

/// As many evaluations of a sigmoid and its derivative at 81 wavelengths as the exposure cube's fits take.
void plainEvaluations(const FilmSpectralModel& model, long evaluations) {
    for (long k = 0; k < evaluations; ++k) {
        LinearRgb rgb, d0, d1, d2;
        const double c = 1e-6 * static_cast<double>(k);
        for (std::size_t i = 0; i < spectralSampleCount; ++i) {
            const double t = static_cast<double>(i) / 40 - 1;
            const double z = c * t * t - c * t + 0.1;
            const double h = std::hypot(1, z);
            const LinearRgb slope = model.reflectionWeights[i] * (0.5 / (h * h * h));
            rgb += model.reflectionWeights[i] * (0.5 * z / h + 0.5);
            d0 += slope * (t * t);
            d1 += slope * t;
            d2 += slope;
        }
        sink += sum(rgb) + sum(d0) + sum(d1) + sum(d2);
    }
}

/// Every node of an optical cube with one power for each wavelength.
void plainTransmissions(const FilmSpectralModel& model, const Spectral<Vector3>& dyes) {
    for (int node = 0; node < 33 * 33 * 33; ++node) {
        const Vector3 density = Vector3{double(node % 33), double(node / 33 % 33), double(node / 1089)} / 10;
        Transmission seen;
        for (std::size_t i = 0; i < spectralSampleCount; ++i) {
            seen += model.paperWeights[i] * std::pow(10.0, -dot(density, dyes[i]));
        }
        sink += sum(seen);
    }
}

/// The longest time from a request to stop until a build has ended.
double stopSeconds() {
    double longest = 0;
    for (int delay = 1; delay < 40; delay += 6) {
        std::stop_source stop;
        std::atomic<double> asked = 0;
        const std::jthread other([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(delay));
            asked = wallSeconds();
            stop.request_stop();
        });
        try {
            while (true) buildOptics(FilmStock::portra400, FilmPaper::glossy, 0, stop.get_token());
        } catch (const lumisort::tasks::Cancelled&) {
            longest = std::max(longest, wallSeconds() - asked);
        }
    }
    return longest;
}

} // namespace

int main() {
    const FilmSpectralModel model(FilmStock::portra400, FilmPaper::glossy);
    std::vector<LinearRgb> colours;
    for (int node = 1; node < 33 * 33 * 33; ++node) {
        colours.push_back(LinearRgb{double(node % 33), double(node / 33 % 33), double(node / 1089)} / 32);
    }
    long evaluations = 0;
    model.reconstructor().reconstruct(
        colours, [&](std::size_t, const FilmReconstructedSpectrum& s) { evaluations += s.iterations; });
    std::printf("%ld evaluations of 81 samples for 35937 fits\n", evaluations);

    const double exposure = best(processorSeconds, [&] { exposureCube(model, 1); });
    row("exposure cube, one core", exposure, "its evaluations with hypot",
        best(processorSeconds, [&] { plainEvaluations(model, evaluations); }));
    const double optical = best(processorSeconds, [&] {
        negativeCube(model, 1);
        paperCube(model, 1);
        densityCurves(model);
    });
    row("both optical cubes and the curves, one core", optical, "their sums with pow",
        best(processorSeconds, [&] {
            plainTransmissions(model, model.dyes);
            plainTransmissions(model, model.paperDyes);
        }));
    const auto whole = [](int workers) {
        return best(wallSeconds, [&] { buildOptics(FilmStock::portra400, FilmPaper::glossy, workers); });
    };
    row("whole optics, two workers, wall clock", whole(2), "one worker", whole(1));
    std::printf("stopped at the latest %.1f ms after it was asked for; one slice takes %.1f ms\n",
                stopSeconds() * 1e3, exposure / 33 * 1e3);
    return sink > 0 ? 0 : 1;
}
