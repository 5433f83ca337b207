#pragma once

#include "support/MemoryFileSystem.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <string>

namespace lumisort::test {

/// Runs `work` once for each of its operations, with that one failing, then with a crash there whose
/// unflushed folder entries are lost and kept, and lets `check(system, done)` look at what is left; `done`
/// says whether `work` returned.
template <class SetUp, class Work, class Check>
void throughEveryFault(const SetUp& setUp, const Work& work, const Check& check) {
    enum class Fault { failure, crashLosing, crashKeeping };
    for (const auto fault : {Fault::failure, Fault::crashLosing, Fault::crashKeeping}) {
        for (std::size_t n = 0;; ++n) {
            SCOPED_TRACE("fault " + std::to_string(static_cast<int>(fault)) + " at " + std::to_string(n));
            MemoryFileSystem system;
            setUp(system);
            if (fault == Fault::failure)
                system.failAt(n, EIO);
            else
                system.crashAt(n);
            bool done = false;
            try {
                work(system);
                done = true;
            } catch (const files::FileError&) {
            } catch (const Crashed&) {
            }
            const bool met = system.faultMet();
            if (met && fault != Fault::failure)
                system.restart(fault == Fault::crashLosing ? MemoryFileSystem::UnflushedEntries::lost
                                                           : MemoryFileSystem::UnflushedEntries::kept);
            else
                system.failAt(1'000'000, EIO);
            check(system, done);
            if (!met) break;
        }
    }
}

} // namespace lumisort::test
