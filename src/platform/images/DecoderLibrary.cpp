#include "platform/images/DecoderLibrary.h"

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
        if (auto file = folder / decoderLibrary; std::filesystem::exists(file)) return file;
    throw DecoderUnavailable(std::string("Photos cannot be opened: ") + decoderLibrary +
                             " is missing beside the program.");
}

const Decoder& load() {
    initialiseDecoder();
    void* const library = dlopen(libraryFile().c_str(), RTLD_NOW | RTLD_LOCAL); // until the program ends
    void* const entry = library ? dlsym(library, decoderEntry) : nullptr;
    if (!entry)
        throw DecoderUnavailable(
            std::string("Photos cannot be opened, the decoding library does not load: ") + dlerror() + '.');
    return *reinterpret_cast<DecoderEntry>(entry)({.verbose = verbose});
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

const Decoder& decoder() {
    // A library of its own, because some sixty others come with it, whose loading takes longer than opening a
    // window.
    static const Decoder& loaded = load();
    return loaded;
}

} // namespace lumisort::images
