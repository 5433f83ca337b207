#include "film/edits/FilmLook.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace lumisort::film {
namespace {

using testing::ElementsAre;

struct Looks {
    test::TemporaryFolder folder;
    std::string path = (folder.path() / "looks").string();
    FilmLooks looks{files::FileSystem::real(), path};

    void write(const char* name, const char* text) const { std::ofstream(path + '/' + name) << text; }
};

FilmSettings warm() {
    FilmSettings settings;
    settings.exposure = 0.7;
    settings.stock = FilmStock::color400;
    return settings;
}

TEST(FilmLooks, KeepsLooksUnderAnyName) {
    Looks desk;
    EXPECT_THAT(desk.looks.list(), ElementsAre());
    const std::string longName(600, 'x');
    for (const auto* name : {"Warm 10", "Warm 9", "../../evil", "Ä/\x01 %41", "."})
        desk.looks.save({name, warm()});
    desk.looks.save({longName, warm()});
    desk.looks.save({"Warm 9", FilmSettings()});
    EXPECT_EQ(desk.looks.list().size(), 6u);
    const auto listed = desk.looks.list();
    const auto names = [&] {
        std::vector<std::string> all;
        for (const auto& look : listed) all.push_back(look.name);
        return all;
    }();
    EXPECT_THAT(names, testing::IsSupersetOf({"../../evil", "Ä/\x01 %41", "Warm 9", "Warm 10"}));
    EXPECT_LT(std::ranges::find(names, "Warm 9"), std::ranges::find(names, "Warm 10"));
    EXPECT_EQ(std::ranges::find(listed, "Warm 9", &FilmLook::name)->settings, FilmSettings());
    desk.looks.remove("../../evil");
    desk.looks.remove("never there");
    EXPECT_EQ(desk.looks.list().size(), 5u);
}

TEST(FilmLooks, PassesOverWhatIsNoLookAndSaysSoWhereOneIsImported) {
    Looks desk;
    desk.looks.save({"Good", warm()});
    desk.write("empty.json", "");
    desk.write("other.json", R"({"name":"x","settings":{},"version":2})");
    desk.write("stock.json", R"({"name":"x","settings":{"stock":"none"},"version":1})");
    desk.write("wild.json", R"({"name":"Wild","settings":{"exposure":99},"version":1})");
    std::filesystem::create_directory(desk.path + "/folder.json");
    EXPECT_THAT(desk.looks.list(), ElementsAre(testing::Field(&FilmLook::name, "Good"),
                                               testing::Field(&FilmLook::name, "Wild")));
    EXPECT_EQ(desk.looks.list()[1].settings.exposure, 3) << "within what the editor offers";
    for (const auto* file : {"empty.json", "other.json", "stock.json", "folder.json", "missing.json"}) try {
            readLook(files::FileSystem::real(), desk.path + '/' + file);
            ADD_FAILURE() << file;
        } catch (const files::FileError& error) {
            EXPECT_THAT(error.what(), testing::HasSubstr(file));
        }
}

TEST(FilmLooks, TravelAsText) {
    EXPECT_EQ(lookFromText(lookText({"a \"b\"", warm()})), (FilmLook{"a \"b\"", warm()}));
    for (const auto* text :
         {"", "hello", "{}", "[1]", R"({"name":"x","version":1})", R"({"settings":{},"version":1})"})
        EXPECT_EQ(lookFromText(text), std::nullopt) << text;
}

} // namespace
} // namespace lumisort::film
