#include "film/editor/FilmEditStore.h"

#include "support/EveryFault.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace lumisort::film {
namespace {

using files::FileUrl;
using test::MemoryFileSystem;

const auto location = FileUrl::fromPath("/data/Lumisort/film-edits.json");
const auto photo = FileUrl::fromPath("/photos/a.nef");

FilmSettings edited() {
    FilmSettings settings;
    settings.stock = FilmStock::mono400;
    settings.exposure = 0.1;
    return settings;
}

struct Desk {
    Desk() { system.write(photo.path(), "raw"); }

    std::optional<std::string> document() const { return system.contents(location.path()); }
    /// Loads and saves as an editor does.
    void edit(const FilmSettings& settings, const FileUrl& url = photo) {
        store.save(settings, url, store.loadForEditing(url).stamp);
    }

    MemoryFileSystem system;
    FilmEditStore store{system, location};
};

void expectSourceChanged(const std::function<void()>& work) {
    try {
        work();
        ADD_FAILURE() << "not refused";
    } catch (const FilmEditStoreError& error) {
        EXPECT_EQ(error.kind(), FilmEditStoreError::Kind::sourceChanged);
        EXPECT_STREQ(error.what(),
                     "This photo changed on disk. Reload it before making further adjustments or exporting.");
    }
}

TEST(FilmEditStore, APhotoThatWasNeverEditedStartsAnew) {
    Desk desk;
    const auto snapshot = desk.store.loadForEditing(photo);
    EXPECT_EQ(snapshot.settings, FilmSettings{});
    EXPECT_EQ(snapshot.stamp, library::FingerprintStamp::read(desk.system, photo));
    EXPECT_EQ(snapshot.persistenceWarning, std::nullopt);
    EXPECT_EQ(desk.system.filesBelow("/"), std::vector{photo.path()});
    EXPECT_THROW(desk.store.loadForEditing(FileUrl::fromPath("/photos/none.nef")), files::FileError);
}

TEST(FilmEditStore, KeepsSettingsWithinTheEditingRanges) {
    Desk desk;
    auto settings = edited();
    settings.exposure = 4;
    settings.grain = std::numeric_limits<double>::quiet_NaN();
    desk.edit(settings);
    EXPECT_THAT(*desk.document(), testing::HasSubstr(R"("exposure":3.0)"));

    settings = edited();
    settings.exposure = 3;
    FilmEditStore another(desk.system, location);
    for (auto* store : {&desk.store, &another}) {
        const auto snapshot = store->loadForEditing(photo);
        EXPECT_EQ(snapshot.settings, settings);
        EXPECT_EQ(snapshot.persistenceWarning, std::nullopt);
    }
}

TEST(FilmEditStore, WritesSortedKeysAtEveryLevel) {
    const library::FingerprintStamp stamp{3, time::Timestamp(1.5), time::Timestamp(0.5)};
    FilmEditDocument document;
    document.photos[filmEditKey("/b")] = {FilmSettings{}, stamp};
    document.photos[filmEditKey("/a\xFF")] = {FilmSettings{}, {4, std::nullopt, std::nullopt}};
    const std::string settings =
        R"({"colorSeparation":0.25,"exposure":0.0,"format":"mm35","grain":0.35,)"
        R"("halation":0.2,"paper":"glossy","printExposure":0.0,"stock":"portra400"})";
    EXPECT_EQ(documentText(document),
              R"({"photos":{"/b":{"settings":)" + settings +
                  R"(,"stamp":{"created":0.5,"modified":1.5,"size":3}},"file:///a%FF":{"settings":)" +
                  settings + R"(,"stamp":{"size":4}}},"version":1})");
    MemoryFileSystem system;
    system.write(location.path(), documentText(document));
    EXPECT_EQ(readFilmEdits(system, location.path()), document);
}

TEST(FilmEditStore, StaleSettingsAreIgnoredKeptAndNotOverwritten) {
    Desk desk;
    desk.edit(edited());
    const auto old = desk.store.loadForEditing(photo).stamp;
    const auto before = desk.document();
    desk.system.write(photo.path(), "new");

    const auto snapshot = desk.store.loadForEditing(photo);
    EXPECT_EQ(snapshot.settings, FilmSettings{});
    EXPECT_EQ(snapshot.persistenceWarning, std::nullopt);
    expectSourceChanged([&] { desk.store.save(FilmSettings{}, photo, old); });
    EXPECT_EQ(desk.document(), before);

    desk.system.remove(photo.path());
    EXPECT_THROW(desk.store.save(FilmSettings{}, photo, old), files::FileError);
    EXPECT_EQ(desk.document(), before);
}

TEST(FilmEditStore, LooksAtThePhotoAgainRightBeforeItWrites) {
    Desk desk;
    desk.edit(edited());
    const auto before = desk.document();
    const auto stamp = desk.store.loadForEditing(photo).stamp;
    auto other = edited();
    other.exposure = 1;
    desk.system.before = [&, looks = 0](std::string_view operation, const std::string& path) mutable {
        // Looks at the photo: once to resolve its path, once for the stamp at the start.
        if (operation == "status" && path == photo.path() && ++looks == 3) desk.system.write(path, "new");
    };
    expectSourceChanged([&] { desk.store.save(other, photo, stamp); });
    EXPECT_EQ(desk.document(), before);
    desk.system.before = nullptr;
    EXPECT_EQ(desk.store.loadForEditing(photo).settings, FilmSettings{});
}

TEST(FilmEditStore, LeavesADocumentAloneThatItCannotRead) {
    const std::string entry = R"("settings":{},"stamp":{"size":3})";
    const std::string unsupported = "Saved film adjustments use an unsupported format.";
    const std::string malformed = "Could not read “/data/Lumisort/film-edits.json”: ";
    const struct {
        std::string text, warning;
    } cases[] = {
        {R"({"photos":{},"version":2})", unsupported},
        {R"({"photos":[{"of":"another"}],"version":0})", unsupported},
        {R"({"photos":{}})", malformed + "version: is missing"},
        {R"({"photos":{},"version":"1"})", malformed + "version: a whole number is expected"},
        {R"({"version":1})", malformed + "photos: is missing"},
        {R"({"photos":{"/a":{"settings":{}}},"version":1})", malformed + "photos[\"/a\"].stamp: is missing"},
        {R"({"photos":{"/a":{"stamp":{"size":3}}},"version":1})",
         malformed + "photos[\"/a\"].settings: is missing"},
        {R"({"photos":{"/a":{"settings":{"stock":"x"},"stamp":{"size":3}}},"version":1})",
         malformed + "photos[\"/a\"].settings.stock: “x” is not known"},
        {R"({"photos":{"/a":{)" + entry + R"(},"version":1})", malformed + "no well-formed JSON"},
        {R"({"photos":{"/a":{)" + entry + "}}", malformed + "no well-formed JSON"},
        {R"({"photos":{"/a":{)" + entry, malformed + "no well-formed JSON"},
        {"", malformed + "the file is empty"},
    };
    for (const auto& [text, warning] : cases) {
        Desk desk;
        desk.system.write(location.path(), text);
        for (int round = 0; round < 2; ++round) {
            const auto snapshot = desk.store.loadForEditing(photo);
            EXPECT_EQ(snapshot.settings, FilmSettings{});
            EXPECT_EQ(snapshot.persistenceWarning, warning);
            try {
                desk.store.save(edited(), photo, snapshot.stamp);
                ADD_FAILURE() << text;
            } catch (const std::runtime_error& error) {
                EXPECT_EQ(error.what(), warning);
            }
            EXPECT_EQ(desk.document(), text);
        }
        // Nothing of the failure is remembered.
        desk.system.write(location.path(), R"({"photos":{},"version":1})");
        desk.edit(edited());
        EXPECT_EQ(desk.store.loadForEditing(photo).settings, edited());
    }
}

TEST(FilmEditStore, EveryOtherPhotosEntrySurvivesASave) {
    Desk desk;
    const auto second = FileUrl::fromPath("/photos/\xFF.nef");
    desk.system.write(second.path(), "other");
    desk.edit(edited());
    desk.edit(FilmSettings{}, second);
    FilmEditStore another(desk.system, location);
    EXPECT_EQ(another.loadForEditing(photo).settings, edited());
    another.save(edited(), second, another.loadForEditing(second).stamp);
    EXPECT_EQ(FilmEditStore(desk.system, location).loadForEditing(photo).settings, edited());
    EXPECT_EQ(FilmEditStore(desk.system, location).loadForEditing(second).settings, edited());
}

TEST(FilmEditStore, AFailureOrCrashLeavesTheOldEditsOrTheNewOnes) {
    auto after = edited();
    after.exposure = 2;
    test::throughEveryFault(
        [](MemoryFileSystem& system) {
            system.write(photo.path(), "raw");
            FilmEditStore store(system, location);
            store.save(edited(), photo, library::FingerprintStamp::read(system, photo));
        },
        [&](MemoryFileSystem& system) {
            FilmEditStore store(system, location);
            const auto stamp = library::FingerprintStamp::read(system, photo);
            try {
                store.save(after, photo, stamp);
            } catch (const files::FileError&) {
                EXPECT_EQ(store.loadForEditing(photo).settings, edited()) << "the store took what failed";
                throw;
            }
        },
        [&](MemoryFileSystem& system, bool done) {
            const auto left = FilmEditStore(system, location).loadForEditing(photo);
            EXPECT_EQ(left.persistenceWarning, std::nullopt);
            EXPECT_TRUE(left.settings == after || (!done && left.settings == edited()));
        });
}

TEST(FilmEditStore, OnePhotoReachedInSeveralWaysHasOneEntry) {
    const test::TemporaryFolder folder;
    folder.write("real/a.nef", "raw");
    std::filesystem::create_directory_symlink("real", folder.path() / "linked");
    std::filesystem::create_symlink("../linked/a.nef", folder.path() / "real/link.nef");
    const auto document = folder.url().child("data/film-edits.json");
    FilmEditStore store(files::FileSystem::real(), document);
    const char* const ways[] = {"real/a.nef", "linked/a.nef", "real/link.nef", "linked/../real//./a.nef"};
    for (const auto* way : ways) {
        auto settings = edited();
        settings.exposure += 0.5;
        const auto url = folder.url().child(way);
        store.save(settings, url, store.loadForEditing(url).stamp);
        for (const auto* other : ways)
            EXPECT_EQ(store.loadForEditing(folder.url().child(other)).settings, settings);
    }
    EXPECT_EQ(readFilmEdits(files::FileSystem::real(), document.path()).photos.size(), 1U);

    std::filesystem::create_symlink("loop.nef", folder.path() / "loop.nef");
    EXPECT_THROW(store.loadForEditing(folder.url().child("loop.nef")), files::FileError);
}

} // namespace
} // namespace lumisort::film
