#include "similarity/report/ContactSheet.h"

#include "platform/images/Decoder.h"
#include "platform/tasks/Cancellation.h"
#include "similarity/report/HtmlText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>

namespace lumisort::similarity {
namespace {

using testing::HasSubstr;
using testing::Not;

library::Photo photoAt(const std::string& path) {
    return {
        .url = files::FileUrl::fromPath(path), .bytes = 1'234'567, .width = 4000, .height = 3000, .date = {}};
}

SimilarityGroup groupOf(int photos, const std::string& name, bool distances = false) {
    SimilarityGroup group;
    for (int i = 0; i < photos; ++i) {
        group.photos.push_back(photoAt("/p/" + name + std::to_string(i) + ".jpg"));
        if (distances && i > 0) group.distances[group.photos.back().url] = 0.1F * static_cast<float>(i);
    }
    group.anchor = group.photos.front();
    return group;
}

images::Bitmap grey(const files::FileUrl&, int side, const std::stop_token&) {
    return {side, 2, std::vector<std::uint8_t>(8 * static_cast<std::size_t>(side), 128)};
}

ContactSheetOptions plainOptions() {
    return {.title = "Visual Similarity", .subtitle = "Balanced", .thumbnail = grey};
}

std::string sheet(const std::vector<SimilarityGroup>& groups, const ContactSheetOptions& options) {
    std::string page;
    writeContactSheet(groups, options, [&](std::string_view piece) { page += piece; }, {});
    return page;
}

std::size_t count(const std::string& page, std::string_view text) {
    std::size_t found = 0;
    for (std::size_t at = page.find(text); at != std::string::npos; at = page.find(text, at + 1)) ++found;
    return found;
}

TEST(HtmlText, ShowsAnyBytesAndObeysNone) {
    const std::pair<std::string, std::string> cases[] = {
        {"plain name.jpg", "plain name.jpg"},
        {R"(<a href="x" onclick='y'>&amp;)", "&lt;a href=&quot;x&quot; onclick=&#39;y&#39;&gt;&amp;amp;"},
        {"é日本😀", "é日本😀"},
        {"\xE9t\xE9", "\\xE9t\\xE9"},                          // Latin-1
        {"\xC0\xBC\xED\xA0\x80", "\\xC0\\xBC\\xED\\xA0\\x80"}, // an overlong "<", a surrogate
        {"cut \xE2\x82", "cut \\xE2\\x82"},
        {"a\nb\t\x7F", "a\\x0Ab\\x09\\x7F"},
        {"gpj\u202Egpj.exe\u2066\u2028", "gpj\\u202Egpj.exe\\u2066\\u2028"},
        {"👩\u200D🚀", "👩\u200D🚀"},
    };
    for (const auto& [bytes, text] : cases) EXPECT_EQ(htmlText(bytes), text);
}

TEST(Base64, AgreesWithTheVectorsOfTheStandard) {
    const std::pair<std::string, std::string> vectors[] = {
        {"", ""},        {"f", "Zg=="},        {"fo", "Zm8="},
        {"foo", "Zm9v"}, {"foob", "Zm9vYg=="}, {"foobar", "Zm9vYmFy"},
    };
    for (const auto& [bytes, text] : vectors) EXPECT_EQ(base64(bytes), text);
}

TEST(ContactSheet, ShowsGroupsWithDistancesSizesAndPaths) {
    const auto page = sheet({groupOf(3, "a", true), groupOf(2, "b")}, plainOptions());
    EXPECT_THAT(page, HasSubstr("<h1>Visual Similarity</h1><p>Balanced · 2 groups · 5 photos</p>"));
    EXPECT_THAT(page, HasSubstr("Group 1<span>3 photos</span>"));
    EXPECT_THAT(page, HasSubstr("href=\"file:///p/a1.jpg\" title=\"/p/a1.jpg\"><bdi>a1.jpg</bdi></a>"));
    EXPECT_THAT(page, HasSubstr("4000 × 3000, 1.2 MB"));
    EXPECT_THAT(page, HasSubstr(">0.100</span>"));
    EXPECT_THAT(page, HasSubstr(">0.200</span>"));
    EXPECT_EQ(count(page, ">Anchor</span>"), 1U); // groups without distances have no badge
    EXPECT_EQ(count(page, "src=\"data:image/jpeg;base64,/9j/"), 5U);
    EXPECT_EQ(count(page, "width=\"180\" height=\"2\""), 5U);
    EXPECT_THAT(page, Not(HasSubstr("http"))); // nothing is fetched from anywhere
    EXPECT_THAT(page, Not(HasSubstr("<script")));
    EXPECT_THAT(sheet({}, plainOptions()), HasSubstr("No photos match."));
}

TEST(ContactSheet, SurvivesHostileNamesAndPhotosThatCannotBeDecoded) {
    SimilarityGroup group;
    group.photos = {photoAt("/p/<script>\"\xFF.jpg"), photoAt("/p/gone.jpg")};
    group.photos[0].width = 0;
    group.anchor = group.photos[0];
    auto options = plainOptions();
    options.title = "<b>";
    options.failures = {"\xFE<i>.jpg: no photo"};
    options.thumbnail = [](const files::FileUrl& url, int side, const std::stop_token& stop) {
        if (url.name() == "gone.jpg") throw images::ImageError("The file is <gone>.");
        return grey(url, side, stop);
    };
    const auto page = sheet({group}, options);
    EXPECT_THAT(page, HasSubstr("<bdi>&lt;script&gt;&quot;\\xFF.jpg</bdi>"));
    EXPECT_THAT(page, HasSubstr("file:///p/%3Cscript%3E%22%FF.jpg"));
    EXPECT_THAT(page, HasSubstr(">The file is &lt;gone&gt;.</a>"));
    EXPECT_THAT(page, HasSubstr("1 photo left out</summary><ul>\n<li>\\xFE&lt;i&gt;.jpg: no photo</li>"));
    EXPECT_THAT(page, HasSubstr("<div>1.2 MB</div>")); // of unknown size in pixels
    EXPECT_THAT(page, Not(HasSubstr("<b>")));
    EXPECT_THAT(page, Not(HasSubstr("<script")));
}

TEST(ContactSheet, KeepsTheOrderOverManyBatchesAndCutsHugeGroups) {
    auto options = plainOptions();
    options.thumbnailSide = 1;
    options.mostPhotosOfGroup = 90;
    const std::vector groups{groupOf(63, "a"), groupOf(2, "b"), groupOf(300, "c"), groupOf(91, "d"),
                             groupOf(90, "e")};
    const auto page = sheet(groups, options);
    EXPECT_EQ(count(page, "<section>"), groups.size());
    EXPECT_EQ(count(page, "</section>"), groups.size());
    EXPECT_EQ(count(page, "<figure>"), 63U + 2 + 90 + 90 + 90);
    EXPECT_THAT(page, HasSubstr("and 210 more photos"));
    EXPECT_THAT(page, HasSubstr("and 1 more photo<"));
    EXPECT_EQ(count(page, "class=\"more\""), 2U);
    std::size_t at = 0;
    for (const char* name :
         {"a0.jpg", "a62.jpg", "Group 2", "b1.jpg", "c0.jpg", "c89.jpg", "d0.jpg", "e0.jpg", "e89.jpg"}) {
        const std::size_t next = page.find(name, at);
        ASSERT_NE(next, std::string::npos) << name;
        at = next;
    }
}

TEST(ContactSheet, StopsAndPassesFailuresOn) {
    const std::vector groups{groupOf(400, "a")};
    std::atomic<int> made = 0;
    std::stop_source source;
    auto options = plainOptions();
    options.thumbnail = [&](const files::FileUrl& url, int side, const std::stop_token& stop) {
        if (++made == 100) source.request_stop();
        return grey(url, side, stop);
    };
    EXPECT_THROW(
        writeContactSheet(groups, options, [](std::string_view) {}, source.get_token()), tasks::Cancelled);
    EXPECT_LE(made, 104);
    const PageSink full = [](std::string_view) { throw std::runtime_error("disk full"); };
    EXPECT_THROW(writeContactSheet(groups, plainOptions(), full, {}), std::runtime_error);
}

} // namespace
} // namespace lumisort::similarity
