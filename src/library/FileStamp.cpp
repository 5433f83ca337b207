#include "library/FileStamp.h"

namespace lumisort::library {

FileStamp FileStamp::read(files::FileSystem& system, const files::FileUrl& url) {
    return of(system.status(url.path(), files::Links::doNotFollow));
}

FileStamp FileStamp::of(const files::FileStatus& status) {
    FileStamp stamp{status.size, status.modified.timestamp(), std::nullopt};
    if (status.created) stamp.created = status.created->timestamp();
    return stamp;
}

} // namespace lumisort::library
