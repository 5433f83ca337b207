#include "app/commandline/Folders.h"

#include "platform/files/FileError.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace lumisort::app {

TEST(FolderArguments, AreEachThereOnceAndOutermost) {
    const test::TemporaryFolder folder;
    folder.write("a/b/photo.jpg", "");
    folder.write("ab/photo.jpg", "");
    const auto top = folder.path().string();
    std::vector<std::string> paths;
    for (const auto& each : folderArguments({top + "/a/b", top + "/a/", top + "//a/./b/..", top + "/ab"}))
        paths.push_back(each.path());
    EXPECT_THAT(paths, testing::ElementsAre(top + "/a", top + "/ab"));
}

TEST(FolderArguments, NameWhatIsWrong) {
    const test::TemporaryFolder folder;
    folder.write("file.jpg", "");
    for (const auto* name : {"missing", "file.jpg", "file.jpg/below"}) {
        const auto path = (folder.path() / name).string();
        try {
            folderArguments({path});
            ADD_FAILURE() << name;
        } catch (const files::FileError& error) {
            EXPECT_THAT(error.what(),
                        testing::AllOf(testing::StartsWith("Could not scan "), testing::HasSubstr(path)));
        }
    }
}

} // namespace lumisort::app
