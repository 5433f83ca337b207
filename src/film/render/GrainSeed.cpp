#include "film/render/GrainSeed.h"

#include "platform/files/Digest.h"
#include "platform/files/ResolvedPath.h"

#include <span>
#include <string>

namespace lumisort::film {

std::uint32_t grainSeed(files::FileSystem& system, const files::FileUrl& photo) {
    files::Sha256 digest;
    const std::string path = files::resolvedPath(system, photo.path());
    digest.update(std::as_bytes(std::span(path)));
    return static_cast<std::uint32_t>(std::stoul(digest.finish().substr(0, 8), nullptr, 16));
}

} // namespace lumisort::film
