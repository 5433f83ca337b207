#include "film/optics/SigmoidKernel.h"

#include <gtest/gtest.h>
#include <hwy/targets.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cmath>

namespace lumisort::film {
namespace {

// The last elements before a page that nobody may touch: a store of a whole vector there, blended or not,
// ends the program, on any instruction set.
TEST(SigmoidKernel, TouchesNothingBehindItsOutput) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void* const pages = mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(pages, MAP_FAILED);
    ASSERT_EQ(mprotect(static_cast<char*>(pages) + page, page, PROT_NONE), 0);
    double* const end = reinterpret_cast<double*>(static_cast<char*>(pages) + page);

    for (const std::int64_t target : hwy::SupportedAndGeneratedTargets()) {
        hwy::SetSupportedTargetsForTest(target);
        hwy::GetChosenTarget().DeInit();
        for (std::size_t count = 1; count <= 17; ++count) {
            std::vector<double> t;
            for (std::size_t i = 0; i < count; ++i) t.push_back(static_cast<double>(i) / 16);
            const std::span out(end - count, count);
            SigmoidKernel(std::vector<LinearRgb>(count), t).reflectance({2, -3, 0.5}, out);
            for (std::size_t i = 0; i < count; ++i) {
                const double z = 2 * t[i] * t[i] - 3 * t[i] + 0.5;
                EXPECT_NEAR(out[i], 0.5 * z / std::hypot(1, z) + 0.5, 1e-15) << hwy::TargetName(target);
            }
        }
    }
    hwy::SetSupportedTargetsForTest(0);
    hwy::GetChosenTarget().DeInit();
    munmap(pages, 2 * page);
}

} // namespace
} // namespace lumisort::film
