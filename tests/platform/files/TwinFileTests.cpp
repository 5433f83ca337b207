#include "platform/files/TwinFile.h"
#include "support/MemoryFileSystem.h"

#include <gmock/gmock.h>

#include <cerrno>

namespace lumisort::files {

namespace {

using test::Crashed;
using test::MemoryFileSystem;
using testing::ElementsAre;

const std::string list = "/run/list.json";
const std::string hidden = "/run/.list.json.partial";

/// Step by step an array that grows at its end.
std::string textOf(int step) {
    std::string text = "[";
    for (int number = 0; number < step; ++number) text += std::to_string(number) + ',';
    return text + "null]";
}

std::size_t unchangedIn(int step) {
    return textOf(step).size() - std::string("null]").size();
}

constexpr int steps = 5;

TEST(TwinFile, ACrashAtAnyOperationLeavesTheLastStepOrTheOneAtHand) {
    using Entries = MemoryFileSystem::UnflushedEntries;
    for (const bool canExchange : {true, false}) {
        for (const auto entries : {Entries::lost, Entries::kept}) {
            int saved = 0;
            for (std::size_t n = 0; saved < steps; ++n) {
                MemoryFileSystem system;
                system.makeFolder("/run");
                system.setCanExchange(canExchange);
                system.crashAt(n);
                saved = 0;
                try {
                    TwinFile file(system, list, hidden);
                    for (; saved < steps; ++saved) file.save(textOf(saved), unchangedIn(saved - 1));
                } catch (const Crashed&) {
                    ASSERT_TRUE(system.faultMet());
                }
                system.restart(entries);
                const auto contents = system.contents(list).value_or("");
                const bool isOld = contents == (saved == 0 ? "" : textOf(saved - 1));
                EXPECT_TRUE(isOld || contents == textOf(saved)) << "operation " << n << ": " << contents;
            }
        }
    }
}

TEST(TwinFile, AFailedStepIsMadeUpForByTheNext) {
    for (const bool canExchange : {true, false}) {
        bool met = true;
        for (std::size_t n = 0; met; ++n) {
            MemoryFileSystem system;
            system.makeFolder("/run");
            system.setCanExchange(canExchange);
            system.failAt(n, ENOSPC);
            {
                TwinFile file(system, list, hidden);
                std::size_t unchanged = 0;
                for (int step = 0; step < steps; ++step) {
                    try {
                        file.save(textOf(step), unchanged);
                        unchanged = unchangedIn(step);
                        EXPECT_EQ(system.contents(list), textOf(step)) << "operation " << n;
                    } catch (const FileError& error) {
                        EXPECT_EQ(error.code(), ENOSPC);
                        if (step + 1 == steps) --step; // nothing comes after the last: it is tried again
                    }
                }
                met = system.faultMet();
            }
            EXPECT_EQ(system.contents(list), textOf(steps - 1)) << "operation " << n;
        }
    }
}

TEST(TwinFile, WritesOnlyWhatIsNewAndLeavesNothingBeside) {
    constexpr int many = 1000;
    MemoryFileSystem system;
    system.makeFolder("/run");
    // The bytes of two files; a third copy would not fit.
    system.setFreeBytes(static_cast<std::int64_t>(2 * textOf(many - 1).size()));
    {
        TwinFile file(system, list, hidden);
        for (int step = 0; step < many; ++step)
            file.save(textOf(step), step == 0 ? 0 : unchangedIn(step - 1));
    }
    EXPECT_THAT(system.filesBelow("/run"), ElementsAre(list));
    EXPECT_EQ(system.contents(list), textOf(many - 1));
}

} // namespace

} // namespace lumisort::files
