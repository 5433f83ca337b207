#include "library/KeptDocuments.h"

#include "platform/files/AtomicFile.h"
#include "platform/time/LocalTime.h"

#include <cerrno>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lumisort::library {

namespace {

constexpr std::size_t pieceBytes = 1 << 20; ///< of a copy

/// "library.json.<why>-20261122T184500Z", from the second attempt on with a number behind it.
std::string beside(const files::FileUrl& url, std::string_view why, time::Timestamp now, int attempt) {
    auto path = url.path() + '.' + std::string(why) + '-' + time::utcStamp(now);
    return attempt == 1 ? path : path + '-' + std::to_string(attempt);
}

bool isThere(files::FileSystem& system, const std::string& path) {
    try {
        system.status(path, files::Links::doNotFollow);
        return true;
    } catch (const files::FileError& error) {
        if (!error.isMissing()) throw;
        return false;
    }
}

} // namespace

std::optional<files::FileUrl> setAsideUnreadable(files::FileSystem& system, const files::FileUrl& url,
                                                 time::Timestamp now) {
    for (int attempt = 1;; ++attempt) {
        const auto aside = beside(url, "unreadable", now, attempt);
        try {
            system.moveWithoutOverwrite(url.path(), aside);
            system.flushDirectory(url.parent().path());
            return files::FileUrl::fromPath(aside);
        } catch (const files::FileError& error) {
            if (error.isMissing()) return std::nullopt;
            if (error.code() != EEXIST) throw;
        }
    }
}

std::optional<files::FileUrl> keepChanged(files::FileSystem& system, const files::FileUrl& url,
                                          time::Timestamp now) {
    std::string aside;
    for (int attempt = 1; aside.empty() || isThere(system, aside); ++attempt)
        aside = beside(url, "changed", now, attempt);
    try {
        const auto source = system.open(url.path(), files::Links::follow);
        files::replaceFile(system, aside, [&](files::OpenFile& copy) {
            copy.setPermissions(source->status().permissions);
            std::vector<std::byte> piece(pieceBytes);
            while (const auto count = source->read(piece)) copy.write(std::span(piece).first(count));
        });
    } catch (const files::FileError& error) {
        if (error.isMissing()) return std::nullopt;
        throw;
    }
    return files::FileUrl::fromPath(aside);
}

} // namespace lumisort::library
