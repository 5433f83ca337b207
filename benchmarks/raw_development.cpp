// Decoder::develop of camera RAW against LibRaw: how long LibRaw decodes the file, what demosaicing and
// colour take beside that, and how long LibRaw's own demosaicing (AHD) of the same samples takes. In turns,
// the best of some runs, file in the page cache.
//
//   benchmark-raw_development FILE…

#include "platform/images/Decoder.h"

#include <libraw/libraw.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <limits>

namespace {

using namespace lumisort;

template <class Work>
double secondsOf(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

struct Seconds {
    double decoding = std::numeric_limits<double>::infinity(), ahd = decoding, developing = decoding,
           preview = decoding;
};

Seconds measure(const char* path) {
    const auto url = files::FileUrl::fromPath(path);
    Seconds best;
    for (int run = 0; run < 5; ++run) {
        LibRaw raw;
        best.decoding = std::min(best.decoding, secondsOf([&] { raw.open_file(path), raw.unpack(); }));
        best.developing = std::min(best.developing, secondsOf([&] { images::decoder().develop(url, {}); }));
        best.preview =
            std::min(best.preview, secondsOf([&] { images::decoder().develop(url, {.longestSide = 3200}); }));
        if (run > 0) continue;
        raw.imgdata.params.output_color = 0;
        raw.imgdata.params.no_auto_bright = 1;
        best.ahd = secondsOf([&] { raw.dcraw_process(); });
    }
    return best;
}

} // namespace

int main(int count, char** arguments) try {
    images::initialiseDecoder();
    for (int i = 1; i < count; ++i) {
        const Seconds seconds = measure(arguments[i]);
        const double own = seconds.developing - seconds.decoding;
        std::printf("%s\n  decoding by LibRaw %.3f s, demosaicing and colour beside it %.3f s, LibRaw's AHD "
                    "%.3f s (%.2f of it)\n"
                    "  for a preview, whole %.3f s\n",
                    arguments[i], seconds.decoding, own, seconds.ahd, own / seconds.ahd, seconds.preview);
    }
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
