#include "platform/files/FileLock.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

namespace lumisort::files {

TEST(FileLock, IsHeldByOneAtATimeAndFreedByDeath) {
    const test::TemporaryFolder folder;
    const auto path = (folder.path() / "new" / "library.json.lock").string();
    {
        const auto lock = FileLock::tryLock(path);
        ASSERT_TRUE(lock);
        EXPECT_FALSE(FileLock::tryLock(path));
        EXPECT_EQ(FileLock::holder(path), getpid());
    }
    const pid_t child = fork();
    if (child == 0) _exit(FileLock::tryLock(path) ? 0 : 1); // dies with the lock in hand
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(FileLock::holder(path), child);
    EXPECT_TRUE(FileLock::tryLock(path));
}

} // namespace lumisort::files
