#include "library/SessionStore.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <limits>
#include <map>
#include <sstream>

namespace lumisort::library {
namespace {

using files::FileUrl;
using time::Timestamp;

files::FileSystem& disk() {
    return files::FileSystem::real();
}

std::string contents(const FileUrl& url) {
    std::ifstream file(url.path(), std::ios::binary);
    return (std::ostringstream() << file.rdbuf()).str();
}

LibrarySession sample() {
    LibrarySession session;
    session.photos = {
        {FileUrl::fromPath("/a b/ü.jpg"), 12, 4000, 3000, Timestamp(646'000'000.123456)},
        {FileUrl::fromPath("/line\nbreak \"quoted\" \\%41.nef"), std::numeric_limits<std::int64_t>::max(), 0,
         0, std::nullopt},
        {FileUrl::fromPath("/not \xFF utf8.heic"), 0, 1, 2, Timestamp(-0.5)},
    };
    session.folders = {FileUrl::fromPath("/a b/"), FileUrl::fromPath("/no slash")};
    session.reviewMarks = {
        {"/a b/ü.jpg", {ReviewDecision::keep, {12, Timestamp(1.1), Timestamp(0.1)}}},
        {"/not \xFF utf8.heic", {ReviewDecision::cleanup, {0, std::nullopt, std::nullopt}}},
        {"/gone \"again\".jpg", {ReviewDecision::cleanup, {-1, Timestamp(2), std::nullopt}}},
    };
    return session;
}

TEST(SessionStore, ReadsBackWhatItWrites) {
    const test::TemporaryFolder folder;
    const auto url = folder.url().child("new/folders/library.json");
    for (const auto& session : {sample(), LibrarySession{}}) {
        SessionStore::save(disk(), session, url);
        EXPECT_EQ(SessionStore::load(disk(), url), session);
    }
}

TEST(SessionStore, WritesThisText) {
    const test::TemporaryFolder folder;
    const auto url = folder.url().child("library.json");
    LibrarySession session;
    session.photos = {{FileUrl::fromPath("/p/1 ü.jpg"), 5, 4, 3, Timestamp(0.25)},
                      {FileUrl::fromPath("/p/2.jpg"), 6, 0, 0, std::nullopt}};
    session.folders = {FileUrl::fromPath("/p/")};
    SessionStore::save(disk(), session, url);
    EXPECT_EQ(contents(url),
              R"({"photos":[{"url":"file:///p/1%20%C3%BC.jpg","bytes":5,"width":4,"height":3,"date":0.25},)"
              R"({"url":"file:///p/2.jpg","bytes":6,"width":0,"height":0}],"folders":["file:///p/"],)"
              R"("reviewMarks":{}})");
    session = {};
    session.reviewMarks = {{"/ü", {ReviewDecision::keep, {7, Timestamp(1), Timestamp(2.5)}}}};
    SessionStore::save(disk(), session, url);
    EXPECT_EQ(contents(url), R"({"photos":[],"folders":[],"reviewMarks":{"/ü":{"decision":"Keep",)"
                             R"("stamp":{"created":2.5,"modified":1.0,"size":7}}}})");
    session.reviewMarks = {{"/\xFF", {ReviewDecision::cleanup, {7, std::nullopt, std::nullopt}}}};
    SessionStore::save(disk(), session, url);
    EXPECT_EQ(contents(url), R"({"photos":[],"folders":[],"reviewMarks":{"file:///%FF":)"
                             R"({"decision":"For Cleanup","stamp":{"size":7}}}})");
}

TEST(SessionStore, ReadsWhatOtherVersionsMayWrite) {
    const test::TemporaryFolder folder;
    const auto url = folder.write("library.json", R"({
        "version": [1, {"x": null}], "folders": ["file://localhost/p"],
        "reviewMarks": {"/p/a": {"stamp": {"created": null, "size": 1}, "decision": "Keep", "by": "me"},
                        "/p/a": {"stamp": {"size": 2}, "decision": "For Cleanup"},
                        "file:no url": {"stamp": {"size": 3}, "decision": "Keep"}},
        "photos": [{"date": null, "height": -3, "width": 2, "bytes": 1, "url": "file:///p/a", "tags": []}]
    } )");
    LibrarySession expected;
    expected.photos = {{FileUrl::fromPath("/p/a"), 1, 2, -3, std::nullopt}};
    expected.folders = {FileUrl::fromPath("/p")};
    expected.reviewMarks = {{"/p/a", {ReviewDecision::cleanup, {2, std::nullopt, std::nullopt}}},
                            {"file:no url", {ReviewDecision::keep, {3, std::nullopt, std::nullopt}}}};
    EXPECT_EQ(SessionStore::load(disk(), url), expected);

    for (const auto* marks : {"", R"(,"reviewMarks":null)", R"(,"reviewMarks":{})"}) {
        const auto plain =
            folder.write("plain.json", std::string(R"({"photos":[],"folders":[])") + marks + "}");
        EXPECT_EQ(SessionStore::load(disk(), plain), LibrarySession{}) << marks;
    }
}

TEST(SessionStore, SaysWhatIsWrongWithADocument) {
    const std::map<std::string, std::string> cases{
        {R"({"folders":[]})", "photos: is missing"},
        {R"({"photos":[]})", "folders: is missing"},
        {R"({"photos":null,"folders":[]})", "photos: an array is expected"},
        {R"({"photos":[{"url":"file:///a","width":1,"height":1}],"folders":[]})",
         "photos[0].bytes: is missing"},
        {R"({"photos":[{"url":"http://a/b"}],"folders":[]})", "photos[0].url: a file URL is expected"},
        {R"({"photos":[{"url":"file:///%zz"}],"folders":[]})", "photos[0].url: a file URL is expected"},
        {R"({"photos":[],"folders":[7]})", "folders[0]: a text is expected"},
        {R"({"photos":[],"folders":[],"reviewMarks":[]})", "reviewMarks: an object is expected"},
        {R"({"photos":[],"folders":[],"reviewMarks":{"/a.jpg":{"decision":"keep","stamp":{"size":1}}}})",
         "reviewMarks[\"/a.jpg\"].decision: “keep” is no decision"},
        {R"({"photos":[],"folders":[],"reviewMarks":{"/a":{"decision":"Keep","stamp":{}}}})",
         "reviewMarks[\"/a\"].stamp.size: is missing"},
        {R"({"photos":[],"folders":[],"reviewMarks":{"/a":{"decision":"Keep"}}})",
         "reviewMarks[\"/a\"].stamp: is missing"},
        {R"({"photos":[],"folders":[])", "no well-formed JSON"},
        {"", "the file is empty"},
    };
    const test::TemporaryFolder folder;
    for (const auto& [text, message] : cases) {
        const auto url = folder.write("library.json", text);
        try {
            SessionStore::load(disk(), url);
            ADD_FAILURE() << text;
        } catch (const files::FileError& error) {
            EXPECT_EQ(error.what(), "Could not read “" + url.path() + "”: " + message);
            EXPECT_FALSE(error.isMissing());
        }
        EXPECT_EQ(contents(url), text);
    }
    try {
        SessionStore::load(disk(), folder.url().child("none.json"));
        FAIL();
    } catch (const files::FileError& error) {
        EXPECT_TRUE(error.isMissing());
    }
}

TEST(SessionStore, NoTruncatedDocumentIsTaken) {
    const test::TemporaryFolder folder;
    const auto url = folder.url().child("library.json");
    SessionStore::save(disk(), sample(), url);
    const auto whole = contents(url);
    for (std::size_t length = 0; length < whole.size(); length += 3) {
        folder.write("cut.json", whole.substr(0, length));
        EXPECT_THROW(SessionStore::load(disk(), folder.url().child("cut.json")), files::FileError) << length;
    }
}

TEST(SessionStore, SetsAsideUnderADatedNameAndNeverOverAnother) {
    const test::TemporaryFolder folder;
    const Timestamp now(817'159'500); // 2026-11-23 20:45:00 UTC
    const std::string name = "library.json.unreadable-" + std::string("20261123T204500Z");
    for (const auto* suffix : {"", "-2", "-3"}) {
        const auto url = folder.write("library.json", std::string("broken") + suffix);
        const auto aside = SessionStore::setAsideUnreadable(disk(), url, now);
        EXPECT_EQ(aside, folder.url().child(name + suffix));
        EXPECT_FALSE(std::filesystem::exists(url.path()));
    }
    for (const auto* suffix : {"", "-2", "-3"})
        EXPECT_EQ(contents(folder.url().child(name + suffix)), std::string("broken") + suffix);
    EXPECT_EQ(SessionStore::setAsideUnreadable(disk(), folder.url().child("library.json"), now),
              std::nullopt);
}

TEST(SessionStore, FailsToSaveBelowAFile) {
    const test::TemporaryFolder folder;
    folder.write("file", "x");
    EXPECT_THROW(SessionStore::save(disk(), sample(), folder.url().child("file/library.json")),
                 files::FileError);
}

class Environment {
public:
    Environment(const char* name, const char* value) : name_(name) {
        if (const char* before = std::getenv(name)) before_ = before;
        if (value)
            setenv(name, value, 1);
        else
            unsetenv(name);
    }
    ~Environment() {
        if (before_)
            setenv(name_, before_->c_str(), 1);
        else
            unsetenv(name_);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    const char* name_;
    std::optional<std::string> before_;
};

TEST(SessionStore, LiesWhereTheEnvironmentSays) {
    const struct {
        const char *session, *data, *home;
        std::string expected;
    } cases[] = {
        {"/t/any name", "/d", "/h", "/t/any name"},
        {nullptr, "/d", "/h", "/d/Lumisort/library.json"},
        {"", "relative", "/h", "/h/.local/share/Lumisort/library.json"},
        {nullptr, nullptr, "/h", "/h/.local/share/Lumisort/library.json"},
    };
    for (const auto& [session, data, home, expected] : cases) {
        const Environment one("LUMISORT_TEST_SESSION", session);
        const Environment two("XDG_DATA_HOME", data);
        const Environment three("HOME", home);
        EXPECT_EQ(SessionStore::location().path(), expected);
    }
}

} // namespace
} // namespace lumisort::library
