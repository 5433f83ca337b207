#include "similarity/PreciseFileStamp.h"

namespace lumisort::similarity {

PreciseFileStamp PreciseFileStamp::of(const files::FileStatus& status, const files::FileUrl& url) {
    if (status.kind != files::FileKind::regular)
        throw files::FileError("read", url.path(), std::string("It is no regular file"));
    return {.device = static_cast<std::int32_t>(status.device),
            .inode = status.inode,
            .size = status.size,
            .modifiedSeconds = status.modified.seconds,
            .modifiedNanoseconds = status.modified.nanoseconds,
            .changedSeconds = status.changed.seconds,
            .changedNanoseconds = status.changed.nanoseconds};
}

} // namespace lumisort::similarity
