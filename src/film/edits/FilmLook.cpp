#include "film/edits/FilmLook.h"

#include "film/edits/FilmSettingsForm.h"
#include "platform/files/AtomicFile.h"
#include "platform/files/DurableFolders.h"
#include "platform/json/Document.h"
#include "platform/text/Collation.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace lumisort::film {

namespace {

constexpr std::int64_t version = 1;
constexpr std::string_view extension = ".json";
constexpr std::size_t longestName = 200; // of 255 bytes that a file name may have

FilmLook readValue(json::Value root) {
    std::optional<std::string> name;
    std::optional<FilmSettings> settings;
    std::optional<std::int64_t> found;
    json::eachField(root, [&](std::string_view key, json::Value field) {
        if (key == "name") name = json::text(field);
        if (key == "settings") settings = readFilmSettings(field);
        if (key == "version") found = json::integer(field);
    });
    if (json::required(std::move(found), "version") != version)
        throw json::FormatError("is of another version of Lumisort").inField("version");
    return {json::required(std::move(name), "name"),
            json::required(std::move(settings), "settings").validatedForEditing()};
}

} // namespace

std::string lookText(const FilmLook& look) {
    return json::toText([&](json::Writer& out) {
        out.beginObject();
        out.key("name").text(look.name);
        out.key("settings");
        write(out, look.settings.validatedForEditing());
        out.key("version").integer(version);
        out.endObject();
    });
}

std::optional<FilmLook> lookFromText(std::string text) {
    std::optional<FilmLook> look;
    try {
        json::parse(std::move(text), [&](json::Value root) { look = readValue(root); });
    } catch (const json::FormatError&) {
        return std::nullopt;
    }
    return look;
}

FilmLook readLook(files::FileSystem& system, const std::string& path) {
    FilmLook look;
    json::readDocument(system, path, [&](json::Value root) { look = readValue(root); });
    return look;
}

std::string FilmLooks::fileOf(const std::string& name) const {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string file;
    for (const char letter : name.substr(0, longestName)) {
        const auto byte = static_cast<unsigned char>(letter);
        if (byte >= 0x80 || std::isalnum(byte) || letter == ' ' || letter == '-' || letter == '_')
            file += letter;
        else
            file += {'%', digits[byte >> 4], digits[byte & 15]};
    }
    return folder_ + '/' + file.substr(0, longestName) + std::string(extension);
}

std::vector<FilmLook> FilmLooks::list() const {
    std::vector<FilmLook> looks;
    std::vector<std::string> names;
    try {
        system_.eachEntry(folder_, files::Links::follow, [&](std::string_view name, files::FileKind) {
            if (name.ends_with(extension) && !name.starts_with('.')) names.emplace_back(name);
            return true;
        });
    } catch (const files::FileError& error) {
        if (!error.isMissing()) throw;
    }
    for (const auto& name : names) try {
            looks.push_back(readLook(system_, folder_ + '/' + name));
        } catch (const files::FileError&) {
            // No look, or one that cannot be read now: the others are still of use.
        }
    const text::NaturalOrder order;
    std::ranges::sort(
        looks, [&](const FilmLook& a, const FilmLook& b) { return order.compare(a.name, b.name) < 0; });
    return looks;
}

void FilmLooks::save(const FilmLook& look) {
    files::createDurableFolders(system_, folder_);
    files::replaceFile(system_, fileOf(look.name), lookText(look));
}

void FilmLooks::remove(const std::string& name) {
    try {
        system_.remove(fileOf(name));
    } catch (const files::FileError& error) {
        if (!error.isMissing()) throw;
    }
}

} // namespace lumisort::film
