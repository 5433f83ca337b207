#include "film/edits/FilmEditDocument.h"

#include "film/edits/FilmEditStoreError.h"
#include "film/edits/FilmSettingsForm.h"
#include "library/RecordForms.h"
#include "platform/json/Document.h"
#include "platform/text/Collation.h"

namespace lumisort::film {

using json::Value;

namespace {

FilmEditEntry readEntry(Value value) {
    std::optional<FilmSettings> settings;
    std::optional<library::FileStamp> stamp;
    json::eachField(value, [&](std::string_view key, Value field) {
        if (key == "settings") settings = readFilmSettings(field);
        if (key == "stamp") stamp = library::readStamp(field);
    });
    return {json::required(std::move(settings), "settings"), json::required(std::move(stamp), "stamp")};
}

FilmEditDocument readDocument(Value root) {
    std::optional<FilmEditDocument> document;
    json::eachField(root, [&](std::string_view key, Value field) {
        if (key != "photos") return;
        document.emplace();
        json::eachField(field, [&](std::string_view photo, Value entry) {
            document->photos.insert_or_assign(std::string(photo), readEntry(entry));
        });
    });
    return json::required(std::move(document), "photos");
}

std::int64_t readVersion(Value root) {
    std::optional<std::int64_t> version;
    json::eachField(root, [&](std::string_view key, Value field) {
        if (key == "version") version = json::integer(field);
    });
    return json::required(std::move(version), "version");
}

} // namespace

std::string filmEditKey(const std::string& resolvedPath) {
    return text::isUtf8(resolvedPath) ? resolvedPath : files::FileUrl::fromPath(resolvedPath).string();
}

std::string documentText(const FilmEditDocument& document) {
    return json::toText([&](json::Writer& out) {
        out.beginObject();
        out.key("photos").beginObject();
        for (const auto& [key, entry] : document.photos) {
            out.key(key).beginObject();
            out.key("settings");
            write(out, entry.settings);
            out.key("stamp");
            write(out, entry.stamp);
            out.endObject();
        }
        out.endObject();
        out.key("version").integer(FilmEditDocument::supportedVersion);
        out.endObject();
    });
}

FilmEditDocument readFilmEdits(files::FileSystem& system, const std::string& path) {
    FilmEditDocument document;
    try {
        // The version first: what follows "photos" in another one is not for this reader to judge.
        std::int64_t version = 0;
        json::readDocument(system, path, [&](Value root) { version = readVersion(root); });
        if (version != FilmEditDocument::supportedVersion)
            throw FilmEditStoreError(FilmEditStoreError::Kind::unsupportedFormat);
        json::readDocument(system, path, [&](Value root) { document = readDocument(root); });
    } catch (const files::FileError& error) {
        if (!error.isMissing()) throw;
    }
    return document;
}

} // namespace lumisort::film
