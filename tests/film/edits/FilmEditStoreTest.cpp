#include "film/edits/FilmEditStore.h"

#include "support/MemoryFileSystem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <thread>

namespace lumisort::film {
namespace {

using files::FileUrl;

const auto photo = FileUrl::fromPath("/photos/a.nef");
const auto document = filmEditsOf(FileUrl::fromPath("/elsewhere/mine.json"));

TEST(FilmEditStore, TheLaterOfTwoCallsHoldsHoweverSlowTheDiskIs) {
    constexpr int saves = 60;
    test::MemoryFileSystem system;
    system.write(photo.path(), "raw");
    const auto stamp = library::FileStamp::read(system, photo);
    std::atomic<int> writes = 0;
    system.before = [&](std::string_view operation, const std::string&) {
        if (operation == "write" && writes++ % 3 == 0) std::this_thread::yield();
    };
    std::vector<double> order; // read after the store is gone
    FilmSettings settings;
    {
        FilmEditStore store(system, document);
        for (int i = 1; i <= saves; ++i) {
            settings.grain = static_cast<double>(i) / saves;
            store.save(settings, photo, stamp, [&order, grain = settings.grain](const auto& outcome) {
                EXPECT_TRUE(outcome);
                order.push_back(grain);
            });
            store.load(photo, [expected = settings](const auto& outcome) {
                EXPECT_EQ(outcome.value().settings, expected) << "a load sees the saves before it, no other";
            });
        }
    }
    EXPECT_EQ(order.size(), saves);
    EXPECT_TRUE(std::ranges::is_sorted(order));
    EXPECT_EQ(document.path(), "/elsewhere/film-edits.json");
    EXPECT_EQ(readFilmEdits(system, document.path()).photos.at(photo.path()).settings, settings);
}

TEST(FilmEditStore, PassesFailuresOn) {
    test::MemoryFileSystem system;
    FilmEditStore store(system, document);
    std::promise<std::exception_ptr> load, save;
    store.load(photo, [&](const auto& outcome) { load.set_value(outcome.error()); });
    store.save({}, photo, {}, [&](const auto& outcome) { save.set_value(outcome.error()); });
    EXPECT_THROW(std::rethrow_exception(load.get_future().get()), files::FileError);
    EXPECT_THROW(std::rethrow_exception(save.get_future().get()), files::FileError);
}

} // namespace
} // namespace lumisort::film
