#include "library/SessionStore.h"

#include "library/RecordForms.h"
#include "platform/files/AtomicFile.h"
#include "platform/files/DurableFolders.h"
#include "platform/json/Document.h"
#include "platform/text/Collation.h"
#include "platform/time/LocalTime.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <span>

namespace lumisort::library {

namespace {

using json::Value;

constexpr std::size_t pieceBytes = 1 << 20; ///< of a copy

std::string environment(const char* name) {
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nothing sets it
    return value ? value : "";
}

std::string homeFolder() {
    if (auto home = environment("HOME"); home.starts_with('/')) return home;
    std::vector<char> buffer(16'384);
    passwd entry{};
    passwd* found = nullptr;
    getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found);
    return found && found->pw_dir ? found->pw_dir : "/";
}

/// The XDG base directory rules: a relative value counts as none.
std::string dataFolder() {
    if (auto named = environment("XDG_DATA_HOME"); named.starts_with('/')) return named;
    return homeFolder() + "/.local/share";
}

std::string markKey(const std::string& path) {
    return text::isUtf8(path) ? path : files::FileUrl::fromPath(path).string();
}

std::string pathOfMarkKey(std::string_view key) {
    const auto url = files::FileUrl::fromString(key);
    return url ? url->path() : std::string(key);
}

void write(json::Writer& out, const LibrarySession& session) {
    out.beginObject();
    out.key("photos").beginArray();
    for (const auto& photo : session.photos) write(out, photo);
    out.endArray();
    out.key("folders").beginArray();
    for (const auto& folder : session.folders) out.url(folder);
    out.endArray();
    out.key("reviewMarks").beginObject();
    for (const auto& [path, mark] : session.reviewMarks) {
        out.key(markKey(path));
        write(out, mark);
    }
    out.endObject();
    out.endObject();
}

template <class T, class Read>
std::vector<T> readList(Value value, Read&& read) {
    std::vector<T> list;
    json::eachElement(value, [&](Value element) { list.push_back(read(element)); });
    return list;
}

ReviewMarks readMarks(Value value) {
    ReviewMarks marks;
    if (json::isNull(value)) return marks;
    json::eachField(value, [&](std::string_view key, Value field) {
        marks.insert_or_assign(pathOfMarkKey(key), readMark(field));
    });
    return marks;
}

LibrarySession readSession(Value value) {
    std::optional<std::vector<Photo>> photos;
    std::optional<std::vector<files::FileUrl>> folders;
    ReviewMarks marks;
    json::eachField(value, [&](std::string_view key, Value field) {
        if (key == "photos") photos = readList<Photo>(field, readPhoto);
        if (key == "folders") folders = readList<files::FileUrl>(field, json::url);
        if (key == "reviewMarks") marks = readMarks(field);
    });
    return {json::required(std::move(photos), "photos"), json::required(std::move(folders), "folders"),
            std::move(marks)};
}

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

files::FileUrl SessionStore::location() {
    if (const auto named = environment("LUMISORT_TEST_SESSION"); !named.empty())
        return files::FileUrl::fromPath(named);
    return files::FileUrl::fromPath(dataFolder()).child("Lumisort/library.json");
}

void SessionStore::save(files::FileSystem& system, const LibrarySession& session, const files::FileUrl& url) {
    files::createDurableFolders(system, url.parent().path());
    files::replaceFile(system, url.path(), [&](files::OpenFile& file) {
        json::Writer out([&](std::string_view piece) { file.write(std::as_bytes(std::span(piece))); });
        write(out, session);
        out.finish();
    });
}

LibrarySession SessionStore::load(files::FileSystem& system, const files::FileUrl& url) {
    LibrarySession session;
    json::readDocument(system, url.path(), [&](Value root) { session = readSession(root); });
    return session;
}

std::optional<files::FileUrl>
SessionStore::setAsideUnreadable(files::FileSystem& system, const files::FileUrl& url, time::Timestamp now) {
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

std::optional<files::FileUrl> SessionStore::keepChanged(files::FileSystem& system, const files::FileUrl& url,
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
