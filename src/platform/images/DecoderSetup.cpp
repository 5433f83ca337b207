#include "platform/images/DecoderSetup.h"

#include "platform/images/Vips.h"

#include <atomic>
#include <cstdlib>
#include <mutex>

namespace lumisort::images {
namespace {

std::once_flag once;
std::atomic<bool> verbose = false;

void discard(const gchar*, GLogLevelFlags, const gchar*, gpointer) {}

void setUp(const DecoderOptions& options) {
    verbose = options.verbose;
    if (!options.verbose)
        for (const char* domain : {"VIPS", "GLib", "GLib-GObject"})
            g_log_set_handler(domain, static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK & ~G_LOG_LEVEL_ERROR),
                              discard, nullptr);
    // The loaders that libvips keeps in modules of their own (documents, slides, other programs' formats) are
    // not wanted, and loading them takes as long as everything else: a home without modules leaves them out.
    const char* home = std::getenv("VIPSHOME"); // NOLINT(concurrency-mt-unsafe): once, at start-up
    const std::string before = home ? home : "";
    g_setenv("VIPSHOME", "/nonexistent", TRUE);
    const int failed = VIPS_INIT("lumisort");
    if (home)
        g_setenv("VIPSHOME", before.c_str(), TRUE);
    else
        g_unsetenv("VIPSHOME");
    if (failed) throw ImageError("The image library does not start.");

    vips_operation_block_set("VipsForeignLoad", TRUE);
    for (const char* loader : {"VipsForeignLoadJpeg", "VipsForeignLoadPng", "VipsForeignLoadTiff"})
        vips_operation_block_set(loader, FALSE);
    vips_cache_set_max(0);
    vips_concurrency_set(1);
}

} // namespace

void initialiseDecoder(const DecoderOptions& options) {
    std::call_once(once, [&options] { setUp(options); });
}

void ensureDecoder() {
    initialiseDecoder({});
}

bool isVerbose() {
    return verbose;
}

} // namespace lumisort::images
