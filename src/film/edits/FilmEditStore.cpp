#include "film/edits/FilmEditStore.h"

#include "library/LibraryLocation.h"
#include "platform/files/AtomicFile.h"
#include "platform/files/DurableFolders.h"
#include "platform/files/ResolvedPath.h"

namespace lumisort::film {

using library::FingerprintStamp;

FilmEditStore::FilmEditStore(files::FileSystem& system, files::FileUrl fileURL)
    : system_(system), fileURL_(std::move(fileURL)) {}

FilmEditStore& FilmEditStore::shared() {
    static FilmEditStore store(files::FileSystem::real(), defaultLocation());
    return store;
}

files::FileUrl FilmEditStore::defaultLocation() {
    return library::libraryLocation().parent().child("film-edits.json");
}

const FilmEditDocument& FilmEditStore::read() {
    if (!document_) document_ = readFilmEdits(system_, fileURL_.path());
    return *document_;
}

FilmSettings FilmEditStore::settingsFor(const std::string& photo, const FingerprintStamp& stamp) {
    const auto& photos = read().photos;
    const auto entry = photos.find(filmEditKey(photo));
    if (entry == photos.end() || entry->second.stamp != stamp) return {};
    return entry->second.settings.validatedForEditing();
}

void FilmEditStore::requireUnchanged(const files::FileUrl& photo, const FingerprintStamp& expected) {
    if (FingerprintStamp::read(system_, photo) != expected)
        throw FilmEditStoreError(FilmEditStoreError::Kind::sourceChanged);
}

FilmEditSnapshot FilmEditStore::loadForEditing(const files::FileUrl& url) {
    const std::lock_guard lock(mutex_);
    const auto photo = files::resolvedPath(system_, url.path());
    FilmEditSnapshot snapshot;
    snapshot.stamp = FingerprintStamp::read(system_, files::FileUrl::fromPath(photo));
    try {
        snapshot.settings = settingsFor(photo, snapshot.stamp);
    } catch (const std::runtime_error& error) {
        snapshot.persistenceWarning = error.what();
    }
    return snapshot;
}

void FilmEditStore::save(const FilmSettings& settings, const files::FileUrl& url,
                         const FingerprintStamp& expectedStamp) {
    const std::lock_guard lock(mutex_);
    const auto photo = files::FileUrl::fromPath(files::resolvedPath(system_, url.path()));
    requireUnchanged(photo, expectedStamp);
    FilmEditDocument updated = read();
    updated.photos.insert_or_assign(filmEditKey(photo.path()),
                                    FilmEditEntry{settings.validatedForEditing(), expectedStamp});
    const std::string text = documentText(updated);
    files::createDurableFolders(system_, fileURL_.parent().path());
    requireUnchanged(photo, expectedStamp);
    files::replaceFile(system_, fileURL_.path(), text);
    document_ = std::move(updated);
}

} // namespace lumisort::film
