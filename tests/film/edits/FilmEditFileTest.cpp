#include "film/edits/FilmEditFile.h"

#include "support/EveryFault.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
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
        file.save(settings, url, file.load(url).stamp);
    }

    MemoryFileSystem system;
    FilmEditFile file{system, location};
};

TEST(FilmEditFile, APhotoThatWasNeverEditedStartsAnew) {
    Desk desk;
    const auto snapshot = desk.file.load(photo);
    EXPECT_EQ(snapshot.settings, FilmSettings{});
    EXPECT_EQ(snapshot.stamp, library::FileStamp::read(desk.system, photo));
    EXPECT_EQ(snapshot.persistenceWarning, std::nullopt);
    EXPECT_EQ(desk.system.filesBelow("/"), std::vector{photo.path()});
    EXPECT_THROW(desk.file.load(FileUrl::fromPath("/photos/none.nef")), files::FileError);
}

TEST(FilmEditFile, KeepsSettingsWithinTheEditingRanges) {
    Desk desk;
    auto settings = edited();
    settings.exposure = 4;
    settings.grain = std::numeric_limits<double>::quiet_NaN();
    desk.edit(settings);
    EXPECT_THAT(*desk.document(), testing::HasSubstr(R"("exposure":3.0)"));
    EXPECT_EQ(desk.file.load(photo).settings, settings.validatedForEditing());
    EXPECT_EQ(FilmEditFile(desk.system, location).load(photo).settings, settings.validatedForEditing());
}

TEST(FilmEditFile, WritesSortedKeysAtEveryLevel) {
    const library::FileStamp stamp{3, time::Timestamp(1.5), time::Timestamp(0.5)};
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

TEST(FilmEditFile, APhotoThatChangesLosesNothingAndTakesNothing) {
    // A save looks at the photo to resolve its path, for its stamp, and for its stamp again before it writes.
    for (int look = 1; look <= 3; ++look) {
        Desk desk;
        desk.edit(edited());
        const auto before = desk.document();
        const auto stamp = desk.file.load(photo).stamp;
        desk.system.before = [&, looks = 0](std::string_view operation, const std::string& path) mutable {
            if (operation == "status" && path == photo.path() && ++looks == look)
                desk.system.write(path, "new");
        };
        try {
            desk.file.save(FilmSettings{}, photo, stamp);
            ADD_FAILURE() << "change " << look << " was not noticed";
        } catch (const FilmEditStoreError& error) {
            EXPECT_EQ(error.kind(), FilmEditStoreError::Kind::sourceChanged);
            EXPECT_STREQ(error.what(),
                         "This photo changed on disk. Reload it before making further adjustments or "
                         "exporting.");
        }
        const auto snapshot = desk.file.load(photo);
        EXPECT_EQ(snapshot.settings, FilmSettings{});
        EXPECT_EQ(snapshot.persistenceWarning, std::nullopt);
        EXPECT_EQ(desk.document(), before);
    }
}

TEST(FilmEditFile, LeavesADocumentAloneThatItCannotRead) {
    const std::string unsupported = "Saved film adjustments use an unsupported format.";
    const std::string malformed = "Could not read “/data/Lumisort/film-edits.json”: ";
    const struct {
        std::string text, warning;
    } cases[] = {
        {R"({"photos":{},"version":2})", unsupported},
        {R"({"photos":[{"of":"another"}],"version":0})", unsupported},
        {R"({"photos":{},"version":"1"})", malformed + "version: a whole number is expected"},
        {R"({"photos":{"/a":{"stamp":{"size":3}}},"version":1})",
         malformed + "photos[\"/a\"].settings: is missing"},
        {R"({"photos":{"/a":{"settings":{"stock":"x"},"stamp":{"size":3}}},"version":1})",
         malformed + "photos[\"/a\"].settings.stock: “x” is not known"},
        {R"({"photos":{"/a":{"settings":{},"stamp":{"size":3}},"version":1})",
         malformed + "no well-formed JSON"},
        {"", malformed + "the file is empty"},
    };
    for (const auto& [text, warning] : cases) {
        Desk desk;
        desk.system.write(location.path(), text);
        const auto snapshot = desk.file.load(photo);
        EXPECT_EQ(snapshot.settings, FilmSettings{});
        EXPECT_EQ(snapshot.persistenceWarning, warning);
        for (int round = 0; round < 2; ++round) EXPECT_ANY_THROW(desk.edit(edited())) << text;
        EXPECT_EQ(desk.document(), text);
    }
}

TEST(FilmEditFile, AFailureOrCrashLeavesTheOldEditsOrTheNewOnes) {
    auto after = edited();
    after.exposure = 2;
    test::throughEveryFault(
        [](MemoryFileSystem& system) {
            system.write(photo.path(), "raw");
            FilmEditFile file(system, location);
            file.save(edited(), photo, library::FileStamp::read(system, photo));
        },
        [&](MemoryFileSystem& system) {
            FilmEditFile file(system, location);
            const auto stamp = library::FileStamp::read(system, photo);
            try {
                file.save(after, photo, stamp);
            } catch (const files::FileError&) {
                const auto stored = readFilmEdits(system, location.path()).photos.at(photo.path()).settings;
                EXPECT_EQ(file.load(photo).settings, stored) << "it shows another state than that on disk";
                throw;
            }
        },
        [&](MemoryFileSystem& system, bool done) {
            const auto left = FilmEditFile(system, location).load(photo);
            EXPECT_EQ(left.persistenceWarning, std::nullopt);
            EXPECT_TRUE(left.settings == after || (!done && left.settings == edited()));
        });
}

/// The rename is done and the flush of the folder fails: the file is newer than what was held in memory.
TEST(FilmEditFile, ALateFailureCostsNoEdit) {
    Desk desk;
    const auto other = FileUrl::fromPath("/photos/b.nef");
    desk.system.write(other.path(), "raw");
    desk.edit(FilmSettings{});
    desk.system.before = [&](std::string_view operation, const std::string&) {
        if (operation == "flushDirectory") throw files::FileError("flush the folder", "/data", EIO);
    };
    EXPECT_THROW(desk.edit(edited()), files::FileError);
    desk.system.before = {};
    desk.edit(FilmSettings{}, other);
    EXPECT_EQ(desk.file.load(photo).settings, edited());
    EXPECT_EQ(readFilmEdits(desk.system, location.path()).photos.at(photo.path()).settings, edited());
}

TEST(FilmEditFile, OnePhotoReachedInSeveralWaysHasOneEntry) {
    Desk desk;
    desk.system.makeLink("/linked", "photos");
    desk.system.makeLink("/photos/link.nef", "../linked/a.nef");
    desk.system.makeLink("/loop.nef", "loop.nef");
    for (const auto* way :
         {"/photos/a.nef", "/linked/a.nef", "/photos/link.nef", "/linked/../photos//./a.nef"}) {
        auto settings = edited();
        settings.exposure += 0.5;
        desk.edit(settings, FileUrl::fromPath(way));
        EXPECT_EQ(desk.file.load(photo).settings, settings) << way;
        desk.edit(edited());
        EXPECT_EQ(desk.file.load(FileUrl::fromPath(way)).settings, edited()) << way;
    }
    EXPECT_EQ(readFilmEdits(desk.system, location.path()).photos.size(), 1U);
    EXPECT_THROW(desk.file.load(FileUrl::fromPath("/loop.nef")), files::FileError);
}

} // namespace
} // namespace lumisort::film
