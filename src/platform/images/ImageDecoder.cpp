#include "platform/images/Decoding.h"

#include <dlfcn.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <mutex>

namespace lumisort::images {
namespace {

std::once_flag prepared;
std::atomic<bool> verbose = false;

/// Installed as bin/lumisort and lib/lumisort/…; where it was built, programs lie deeper.
std::filesystem::path libraryFile() {
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    for (auto folder = program.parent_path(); folder != folder.root_path(); folder = folder.parent_path())
        if (auto file = folder / decodingLibrary; std::filesystem::exists(file)) return file;
    throw ImageError(std::string("The program is not whole: ") + decodingLibrary + " is missing.");
}

const Decoding& load() {
    initialiseDecoder();
    void* const library = dlopen(libraryFile().c_str(), RTLD_NOW | RTLD_LOCAL); // until the program ends
    void* const entry = library ? dlsym(library, decodingEntry) : nullptr;
    if (!entry) throw ImageError(std::string("The decoding library cannot be loaded: ") + dlerror() + '.');
    return *reinterpret_cast<DecodingEntry>(entry)({.verbose = verbose});
}

/// Some sixty libraries stand behind it, whose loading takes longer than opening a window.
const Decoding& decoding() {
    static const Decoding& loaded = load();
    return loaded;
}

} // namespace

void initialiseDecoder(const DecoderOptions& options) {
    std::call_once(prepared, [&options] {
        verbose = options.verbose;
        // The loaders that libvips keeps in modules of their own (documents, slides, other programs' formats)
        // are not wanted, and loading them takes as long as everything else: a home without modules leaves
        // them out. It stays, because when photos are decoded other threads read the environment.
        setenv("VIPSHOME", "/nonexistent", 1); // NOLINT(concurrency-mt-unsafe): before other threads start
    });
}

ImageProperties readProperties(const files::FileUrl& url) {
    return decoding().readProperties(url);
}

Bitmap decodeThumbnail(const files::FileUrl& url, int maxSide, const std::stop_token& stop) {
    return decoding().decodeThumbnail(url, maxSide, stop);
}

Bitmap decodeRoughThumbnail(const files::FileUrl& url, int maxSide, const std::stop_token& stop) {
    return decoding().decodeRoughThumbnail(url, maxSide, stop);
}

std::optional<ImageType> sniffType(const files::FileUrl& url) {
    return decoding().sniffType(url);
}

std::string encodeJpeg(const Bitmap& bitmap, int quality, int background) {
    return decoding().encodeJpeg(bitmap, quality, background);
}

} // namespace lumisort::images
