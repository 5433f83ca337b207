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
    const std::string dated = url.path() + ".unreadable-" + time::utcStamp(now);
    std::string aside = dated;
    for (int next = 2;; ++next) {
        try {
            system.moveWithoutOverwrite(url.path(), aside);
            break;
        } catch (const files::FileError& error) {
            if (error.isMissing()) return std::nullopt;
            if (error.code() != EEXIST) throw;
            aside = dated + '-' + std::to_string(next);
        }
    }
    system.flushDirectory(url.parent().path());
    return files::FileUrl::fromPath(aside);
}

} // namespace lumisort::library
