#include "library/FingerprintStamp.h"

namespace lumisort::library {

FingerprintStamp FingerprintStamp::read(files::FileSystem& system, const files::FileUrl& url) {
    return of(system.status(url.path(), files::Links::doNotFollow));
}

FingerprintStamp FingerprintStamp::of(const files::FileStatus& status) {
    FingerprintStamp stamp{status.size, status.modified.timestamp(), std::nullopt};
    if (status.created) stamp.created = status.created->timestamp();
    return stamp;
}

} // namespace lumisort::library
