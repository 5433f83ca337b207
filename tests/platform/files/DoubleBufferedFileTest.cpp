#include "platform/files/DoubleBufferedFile.h"

#include "support/MemoryFileSystem.h"

#include <gmock/gmock.h>

namespace lumisort::files {

namespace {

// What a crash leaves is tested where the file is used, by the crashes of an organize run.
TEST(DoubleBufferedFile, WritesOnlyWhatIsNewAndLeavesNothingBeside) {
    test::MemoryFileSystem system;
    system.makeFolder("/run");
    std::string text = "[null]";
    const std::size_t step = 5;
    system.setFreeBytes(2 * (6 + 1000 * step)); // the bytes of two files; a third would not fit
    {
        DoubleBufferedFile file(system, "/run/list", "/run/.list.partial");
        for (int count = 0; count <= 1000; ++count) {
            file.save(text, count == 0 ? 0 : text.size() - 5 - step);
            ASSERT_EQ(system.contents("/run/list"), text);
            text.insert(text.size() - 5, "1234,");
        }
    }
    EXPECT_THAT(system.filesBelow("/run"), testing::ElementsAre("/run/list"));
}

} // namespace

} // namespace lumisort::files
