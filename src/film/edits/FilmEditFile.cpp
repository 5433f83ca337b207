#include "film/edits/FilmEditFile.h"

#include "platform/files/AtomicFile.h"
#include "platform/files/DurableFolders.h"
#include "platform/files/ResolvedPath.h"

#include <utility>

namespace lumisort::film {

using library::FileStamp;

FilmEditFile::FilmEditFile(files::FileSystem& system, files::FileUrl document)
    : system_(system), url_(std::move(document)) {}

const FilmEditDocument& FilmEditFile::read() {
    if (!document_) document_ = readFilmEdits(system_, url_.path());
    return *document_;
}

FilmSettings FilmEditFile::settingsFor(const std::string& photo, const FileStamp& stamp) {
    const auto& photos = read().photos;
    const auto entry = photos.find(filmEditKey(photo));
    if (entry == photos.end() || entry->second.stamp != stamp) return {};
    return entry->second.settings.validatedForEditing();
}

void FilmEditFile::requireUnchanged(const files::FileUrl& photo, const FileStamp& expected) {
    if (FileStamp::read(system_, photo) != expected)
        throw FilmEditStoreError(FilmEditStoreError::Kind::sourceChanged);
}

void FilmEditFile::removeLeftovers() {
    files::removeLeftovers(system_, url_.path());
}

FilmEditSnapshot FilmEditFile::load(const files::FileUrl& url) {
    const auto photo = files::resolvedPath(system_, url.path());
    FilmEditSnapshot snapshot;
    snapshot.stamp = FileStamp::read(system_, files::FileUrl::fromPath(photo));
    try {
        snapshot.settings = settingsFor(photo, snapshot.stamp);
    } catch (const std::runtime_error& error) {
        snapshot.persistenceWarning = error.what();
    }
    return snapshot;
}

void FilmEditFile::save(const FilmSettings& settings, const files::FileUrl& url, const FileStamp& expected) {
    const auto photo = files::FileUrl::fromPath(files::resolvedPath(system_, url.path()));
    requireUnchanged(photo, expected);
    auto updated = read();
    updated.photos.insert_or_assign(filmEditKey(photo.path()),
                                    FilmEditEntry{settings.validatedForEditing(), expected});
    const std::string text = documentText(updated);
    files::createDurableFolders(system_, url_.parent().path());
    requireUnchanged(photo, expected);
    document_.reset(); // a write that fails late has replaced the file: what it holds is read then
    files::replaceFile(system_, url_.path(), text);
    document_ = std::move(updated);
}

files::FileUrl filmEditsOf(const files::FileUrl& libraryDocument) {
    return libraryDocument.parent().child("film-edits.json");
}

} // namespace lumisort::film
