#include "library/KeptDocuments.h"

#include "platform/files/AtomicFile.h"
#include "platform/time/LocalTime.h"

#include <cerrno>
#include <string>
#include <string_view>

namespace lumisort::library {

namespace {

/// "library.json.<why>-20261122T184500Z", from the second attempt on with a number behind it.
std::string beside(const files::FileUrl& url, std::string_view why, time::Timestamp now, int attempt) {
    auto path = url.path() + '.' + std::string(why) + '-' + time::utcStamp(now);
    return attempt == 1 ? path : path + '-' + std::to_string(attempt);
}

/// Renames the file at `from` to the first free name beside `url`.
files::FileUrl moveBeside(files::FileSystem& system, const std::string& from, const files::FileUrl& url,
                          std::string_view why, time::Timestamp now) {
    for (int attempt = 1;; ++attempt) {
        const auto aside = beside(url, why, now, attempt);
        try {
            system.moveWithoutOverwrite(from, aside);
            system.flushDirectory(url.parent().path());
            return files::FileUrl::fromPath(aside);
        } catch (const files::FileError& error) {
            if (error.code() != EEXIST) throw;
        }
    }
}

} // namespace

std::optional<files::FileUrl> setAsideUnreadable(files::FileSystem& system, const files::FileUrl& url,
                                                 time::Timestamp now) {
    try {
        return moveBeside(system, url.path(), url, "unreadable", now);
    } catch (const files::FileError& error) {
        if (error.isMissing()) return std::nullopt;
        throw;
    }
}

std::optional<files::FileUrl> keepChanged(files::FileSystem& system, const files::FileUrl& url,
                                          time::Timestamp now) {
    const auto temporary = files::temporaryPath(url.path());
    try {
        system.copy(url.path(), temporary, {});
        system.open(temporary, files::Links::doNotFollow)->flush();
        return moveBeside(system, temporary, url, "changed", now);
    } catch (const files::FileError& error) {
        const bool noDocument = error.isMissing() && error.path() == url.path();
        try {
            system.remove(temporary);
        } catch (const files::FileError&) { // NOLINT(bugprone-empty-catch): the first failure is reported
        }
        if (noDocument) return std::nullopt;
        throw;
    }
}

} // namespace lumisort::library
