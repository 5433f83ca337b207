#include "platform/images/DecoderSetup.h"

#include "platform/images/Vips.h"

#include <dlfcn.h>
#include <jpeglib.h>

#include <atomic>
#include <cstdio>
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

/// What libjpeg prints where a library leaves its messages as they are.
void printNothing(j_common_ptr) {}

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

/// LibRaw decodes the JPEG tiles of lossy DNG files with libjpeg's own error handler, which prints to the
/// terminal, and offers no way to change that. The handler is made by this function, so the program brings
/// its own, which calls libjpeg's and takes the printing out.
extern "C" jpeg_error_mgr* jpeg_std_error(jpeg_error_mgr* handler) {
    using Original = jpeg_error_mgr* (*)(jpeg_error_mgr*);
    static const auto original = reinterpret_cast<Original>(dlsym(RTLD_NEXT, "jpeg_std_error"));
    original(handler);
    if (!lumisort::images::isVerbose()) handler->output_message = lumisort::images::printNothing;
    return handler;
}
