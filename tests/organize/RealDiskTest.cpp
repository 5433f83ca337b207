#include "organize/OrganizeScene.h"
#include "support/FatVolume.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>

namespace lumisort::organize {

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;

struct RealDisk : testing::Test {
    test::TemporaryFolder folder;
    std::vector<library::Photo> photos;

    void add(const std::string& path, std::string_view contents) {
        photos.push_back({.url = folder.write("photos/" + path, contents)});
    }
    OrganizeReport copyTo(const std::string& destination) {
        std::filesystem::create_directory(destination);
        return OrganizeEngine().copy(photos, files::FileUrl::fromPath(destination), {}, test::unheard, {});
    }
    /// Whether GNU sha256sum accepts the list beside the report, every line of it.
    static bool checksumsHold(const OrganizeReport& report) {
        const auto command = "cd '" + report.logURL.value().parent().path() +
                             "' && sha256sum --check --strict --status SHA256SUMS";
        return std::system(command.c_str()) == 0; // NOLINT(concurrency-mt-unsafe, cert-env33-c)
    }
};

TEST_F(RealDisk, Sha256sumAcceptsTheListWhateverTheNamesAre) {
    for (const auto* name : {"plain.jpg", "line\nfeed.jpg", "back\\slash.jpg", "return\r.jpg", "\xff\xfe.jpg",
                             "it's \"quoted\" *.jpg", " space .jpg", "-n.jpg", "caf\u00e9.jpg"})
        add(name, name);
    std::filesystem::create_symlink("plain.jpg", folder.path() / "photos/link.jpg");
    photos.push_back({.url = folder.url().child("photos/link.jpg")});
    add("big.jpg", std::string(3'000'000, 'x'));

    const auto report = copyTo((folder.path() / "out").string());

    EXPECT_EQ(report.copied.size(), 10U);
    EXPECT_EQ(report.duplicates, 1); // the link leads to a photo that was there before
    EXPECT_THAT(report.failures, ElementsAre());
    EXPECT_EQ(readReport(files::FileSystem::real(), *report.logURL), report);
    EXPECT_TRUE(checksumsHold(report));
    std::ofstream(report.copied.back().destination.path(), std::ios::app) << "rot";
    EXPECT_FALSE(checksumsHold(report));
}

TEST_F(RealDisk, FatTakesWhatItCanHoldAndTheRestIsListed) {
    const test::FatVolume volume(8);
    LUMISORT_NEEDS_FAT(volume);
    for (const auto* name : {"a.jpg", "time 12:30?.jpg", "1/A.jpg"}) add(name, name);
    add("fits.jpg", std::string(3'000'000, 'x'));
    add("does not.jpg", std::string(5'000'000, 'y'));
    EXPECT_THROW(copyTo(volume.path()), files::FileError);
    EXPECT_TRUE(std::filesystem::is_empty(volume.path()));

    const OrganizeEngine engine;
    auto plan = engine.plan(photos, files::FileUrl::fromPath(volume.path()), {}, test::unheard, {});
    for (auto& item : plan.items) item.bytes = 0; // as if the space went after the check
    const auto report = engine.execute(plan, [](std::int64_t, std::int64_t) {}, {});
    EXPECT_THAT(report.copied, ElementsAre(plan.items[0], plan.items[2], plan.items[3]));
    EXPECT_EQ(report.copied[1].destination.name(), "A-2.jpg");
    EXPECT_THAT(report.failures, ElementsAre(StartsWith(photos[1].url.path() + ": Could not create “"),
                                             EndsWith("No space left on device")));
    EXPECT_EQ(readReport(files::FileSystem::real(), *report.logURL), report);
    EXPECT_TRUE(checksumsHold(report));
}

} // namespace

} // namespace lumisort::organize
