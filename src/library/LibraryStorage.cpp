#include "library/LibraryStorage.h"

#include "library/RecordForms.h"
#include "platform/files/AtomicFile.h"
#include "platform/files/Digest.h"
#include "platform/files/DurableFolders.h"
#include "platform/json/Document.h"
#include "platform/text/Collation.h"

#include <span>

namespace lumisort::library {

namespace {

using json::Value;

std::string markKey(const std::string& path) {
    return text::isUtf8(path) ? path : files::FileUrl::fromPath(path).string();
}

std::string pathOfMarkKey(std::string_view key) {
    const auto url = files::FileUrl::fromString(key);
    return url ? url->path() : std::string(key);
}

void write(json::Writer& out, const LibraryContents& contents) {
    out.beginObject();
    out.key("photos").beginArray();
    for (const auto& photo : contents.photos) write(out, photo);
    out.endArray();
    out.key("folders").beginArray();
    for (const auto& folder : contents.folders) out.url(folder);
    out.endArray();
    out.key("reviewMarks").beginObject();
    for (const auto& [path, mark] : contents.reviewMarks) {
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

LibraryContents readContents(Value value) {
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

std::string writeLibrary(files::FileSystem& system, const LibraryContents& contents,
                         const files::FileUrl& url) {
    files::Sha256 digest;
    files::createDurableFolders(system, url.parent().path());
    files::replaceFile(system, url.path(), [&](files::OpenFile& file) {
        json::Writer out([&](std::string_view piece) {
            const auto bytes = std::as_bytes(std::span(piece));
            digest.update(bytes);
            file.write(bytes);
        });
        write(out, contents);
        out.finish();
    });
    return digest.finish();
}

LibraryContents readLibrary(files::FileSystem& system, const files::FileUrl& url) {
    LibraryContents contents;
    json::readDocument(system, url.path(), [&](Value root) { contents = readContents(root); });
    return contents;
}

} // namespace lumisort::library
