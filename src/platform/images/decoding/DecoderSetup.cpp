#include "platform/images/decoding/DecoderSetup.h"

#include "platform/images/decoding/Vips.h"

#include <HalideRuntime.h>
#include <dlfcn.h>
#include <jpeglib.h>

#include <atomic>
#include <cstdio>
#include <mutex>

namespace lumisort::images::decoding {
namespace {

std::once_flag once;
std::atomic<bool> verbose = false;

void discard(const gchar*, GLogLevelFlags, const gchar*, gpointer) {}

/// Pipelines return their errors; the handler that Halide brings ends the program.
void leaveToCaller(void*, const char*) {}

void setUp(const DecoderOptions& options) {
    verbose = options.verbose;
    if (!options.verbose)
        for (const char* domain : {"VIPS", "GLib", "GLib-GObject"})
            g_log_set_handler(domain, static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK & ~G_LOG_LEVEL_ERROR),
                              discard, nullptr);
    if (VIPS_INIT("lumisort"))
        throw DecoderUnavailable("Photos cannot be opened: the image library does not start.");

    halide_set_error_handler(leaveToCaller);
    vips_operation_block_set("VipsForeignLoad", TRUE);
    for (const char* loader : {"VipsForeignLoadJpeg", "VipsForeignLoadPng", "VipsForeignLoadTiff"})
        vips_operation_block_set(loader, FALSE);
    vips_cache_set_max(0);
    vips_concurrency_set(1);
}

/// What libjpeg prints where a library leaves its messages as they are.
void printNothing(j_common_ptr) {}

} // namespace

void start(const DecoderOptions& options) {
    std::call_once(once, [&options] { setUp(options); });
}

bool isVerbose() {
    return verbose;
}

} // namespace lumisort::images::decoding

/// LibRaw decodes the JPEG tiles of lossy DNG files with libjpeg's own error handler, which prints to the
/// terminal, and offers no way to change that. The handler is made by this function, so the program brings
/// its own, which calls libjpeg's and takes the printing out.
extern "C" jpeg_error_mgr* jpeg_std_error(jpeg_error_mgr* handler) {
    using Original = jpeg_error_mgr* (*)(jpeg_error_mgr*);
    static const auto original = reinterpret_cast<Original>(dlsym(RTLD_NEXT, "jpeg_std_error"));
    original(handler);
    if (!lumisort::images::decoding::isVerbose())
        handler->output_message = lumisort::images::decoding::printNothing;
    return handler;
}
