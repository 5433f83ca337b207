#include "support/FatVolume.h"

#include <cstdlib>
#include <fstream>

namespace lumisort::test {

namespace {

bool runs(const std::string& command) {
    return std::system((command + " >/dev/null 2>&1").c_str()) ==
           0; // NOLINT(concurrency-mt-unsafe, cert-env33-c)
}

struct Way {
    const char *format, *type;
};

/// The last one is a driver in user space, for kernels that know neither.
constexpr Way ways[] = {{"mkfs.vfat", "vfat"}, {"mkfs.exfat", "exfat"}, {"mkfs.exfat", "exfat-fuse"}};

} // namespace

FatVolume::FatVolume(int megabytes) {
    const auto image = (folder_.path() / "image").string();
    std::filesystem::create_directory(path());
    std::ofstream(image).close();
    std::filesystem::resize_file(image, static_cast<std::uintmax_t>(megabytes) << 20U);
    for (const auto& [format, type] : ways) {
        if (!runs("PATH=$PATH:/usr/sbin:/sbin " + std::string(format) + " '" + image + "'")) continue;
        isMounted_ = runs("mount -t " + std::string(type) + " -o loop '" + image + "' '" + path() + "'");
        if (isMounted_) return;
    }
}

FatVolume::~FatVolume() {
    if (isMounted_) runs("umount '" + path() + "'");
}

} // namespace lumisort::test
