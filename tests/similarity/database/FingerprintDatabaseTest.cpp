#include "similarity/database/FingerprintDatabase.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <sqlite3.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

namespace lumisort::similarity {
namespace {

using files::FileUrl;

FileUrl photo(int number) {
    return FileUrl::fromPath("/photos/" + std::to_string(number) + ".jpg");
}

std::vector<FileUrl> photos(int count) {
    std::vector<FileUrl> all;
    for (int i = 0; i < count; ++i) all.push_back(photo(i));
    return all;
}

StoredValue value(int number, std::string bytes = "value") {
    return {photo(number), {.size = number, .modified = time::Timestamp(0.1 * number)}, std::move(bytes)};
}

struct Desk {
    test::TemporaryFolder folder;
    std::string file = (folder.path() / "cache" / "prints.sqlite").string();

    int found(FingerprintDatabase& database, int count, std::string_view algorithm = "a") const {
        const auto values = database.read(algorithm, photos(count));
        return static_cast<int>(
            std::ranges::count_if(values, [](const auto& each) { return each.has_value(); }));
    }
    void execute(const char* sql) const {
        sqlite3* other = nullptr;
        sqlite3_open(file.c_str(), &other);
        EXPECT_EQ(sqlite3_exec(other, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(other);
        sqlite3_close(other);
    }
};

TEST(FingerprintDatabase, ReturnsWhatEarlierRunsStored) {
    Desk desk;
    {
        FingerprintDatabase database(desk.file);
        database.write("a", std::vector{value(0), value(1, std::string("\0\xff", 2)), value(2)});
        database.write("a", std::vector{value(2, "newer")});
        database.write("b", std::vector{value(0, "of b")});
    }
    FingerprintDatabase database(desk.file);
    const auto values = database.read("a", photos(4));
    ASSERT_EQ(values.size(), 4u);
    EXPECT_EQ(values[0]->bytes, "value");
    EXPECT_EQ(values[1]->bytes, std::string("\0\xff", 2));
    EXPECT_EQ(values[1]->stamp, value(1).stamp);
    EXPECT_EQ(values[2]->bytes, "newer");
    EXPECT_FALSE(values[3]);
    EXPECT_EQ(database.read("b", photos(1))[0]->bytes, "of b");
    EXPECT_EQ(desk.found(database, 4, "c"), 0) << "another algorithm";
    EXPECT_EQ(database.status().values, 4);
    EXPECT_EQ(database.status().photos, 3);
    database.clear();
    EXPECT_EQ(database.status().values, 0);
    EXPECT_EQ(database.problem(), "");
}

TEST(FingerprintDatabase, MovesAsideWhatItCannotUse) {
    const std::string garbage(10'000, 'x');
    Desk sound;
    {
        FingerprintDatabase(sound.file).write("a", std::vector{value(0)});
    }
    std::string whole;
    {
        std::ifstream stream(sound.file);
        whole.assign(std::istreambuf_iterator<char>(stream), {});
    }
    auto foreign = whole, later = whole, torn = whole.substr(0, whole.size() / 2);
    foreign[70] ^= 1; // application_id
    later[63] = 9;    // user_version
    torn.replace(100, 300, 300, '\x7f');
    for (const auto& contents : {garbage, foreign, later, torn}) {
        Desk desk;
        std::filesystem::create_directories(desk.folder.path() / "cache");
        std::ofstream(desk.file) << contents;
        FingerprintDatabase database(desk.file);
        EXPECT_THAT(database.problem(), testing::HasSubstr(desk.file));
        database.write("a", std::vector{value(0)});
        EXPECT_EQ(desk.found(database, 1), 1);
        int aside = 0;
        for (const auto& entry : std::filesystem::directory_iterator(desk.folder.path() / "cache"))
            aside += entry.path().string().find(".unreadable-") != std::string::npos;
        EXPECT_EQ(aside, 1);
    }
}

TEST(FingerprintDatabase, CostsOnlyTimeWhereItCannotBeWritten) {
    Desk desk;
    std::ofstream(desk.folder.path() / "cache") << "a file where the folder should be";
    FingerprintDatabase database(desk.file);
    EXPECT_THAT(database.problem(), testing::HasSubstr(desk.file));
    database.write("a", std::vector{value(0)});
    EXPECT_EQ(desk.found(database, 1), 0);
    EXPECT_EQ(database.status().bytes, 0);
}

TEST(FingerprintDatabase, StaysUsableOnAFullDisk) {
    Desk desk;
    const auto mountPoint = (desk.folder.path() / "cache").string();
    std::filesystem::create_directory(mountPoint);
    if (mount("tmpfs", mountPoint.c_str(), "tmpfs", 0, "size=256k") != 0) GTEST_SKIP() << "no right to mount";
    {
        FingerprintDatabase database(desk.file);
        database.write("a", std::vector{value(0)});
        std::vector<StoredValue> large;
        for (int i = 1; i < 100; ++i) large.push_back(value(i, std::string(10'000, 'x')));
        database.write("a", large);
        EXPECT_THAT(database.problem(), testing::HasSubstr("full"));
    }
    {
        FingerprintDatabase database(desk.file);
        EXPECT_EQ(desk.found(database, 1), 1) << "what was stored before is still there";
    }
    umount(mountPoint.c_str());
}

TEST(FingerprintDatabase, RemovesWhatWasNotReadForTheLongestTime) {
    Desk desk;
    FingerprintDatabase database(desk.file, 600'000);
    std::vector<StoredValue> values;
    for (int i = 0; i < 100; ++i) values.push_back(value(i, std::string(5'000, 'x')));
    database.write("a", values);
    ASSERT_EQ(desk.found(database, 100), 100);
    desk.execute("UPDATE entries SET used = used - 10");
    EXPECT_EQ(desk.found(database, 30), 30); // in use again
    std::vector<StoredValue> more;
    for (int i = 100; i < 140; ++i) more.push_back(value(i, std::string(5'000, 'x')));
    database.write("a", more);
    EXPECT_EQ(desk.found(database, 30), 30);
    EXPECT_LE(database.status().bytes, 700'000);
    EXPECT_LT(database.status().values, 140);
}

TEST(FingerprintDatabase, ServesSeveralProgramsAtOnce) {
    Desk desk;
    {
        FingerprintDatabase first(desk.file);
    }
    std::vector<pid_t> children;
    for (int child = 0; child < 3; ++child) {
        children.push_back(fork());
        if (children.back() == 0) {
            FingerprintDatabase database(desk.file);
            for (int i = 0; i < 50; ++i) database.write("a", std::vector{value(100 * child + i)});
            _exit(database.problem().empty() ? 0 : 1);
        }
    }
    for (const auto child : children) {
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    FingerprintDatabase database(desk.file);
    EXPECT_EQ(database.status().values, 150);
    std::filesystem::remove_all(desk.folder.path() / "cache"); // deleted while in use
    database.write("a", std::vector{value(1)});
    desk.found(database, 10);
}

TEST(FingerprintDatabase, ReadsAHundredThousandValuesWithinSeconds) {
    Desk desk;
    FingerprintDatabase database(desk.file);
    std::vector<StoredValue> values;
    for (int i = 0; i < 100'000; ++i) values.push_back(value(i, std::string(470, 'x')));
    database.write("a", values);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(desk.found(database, 100'000), 100'000);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30)) << "seconds, not minutes";
    RecordProperty(
        "seconds",
        std::to_string(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count()));
}

} // namespace
} // namespace lumisort::similarity
