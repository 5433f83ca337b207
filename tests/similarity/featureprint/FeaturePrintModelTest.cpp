#include "similarity/featureprint/FeaturePrintModel.h"

#include "Reference.h"
#include "platform/files/Digest.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <new>
#include <thread>

using namespace lumisort;
using namespace lumisort::similarity;
using testing::AllOf;
using testing::HasSubstr;

namespace {

thread_local bool counting = false;
thread_local int allocations = 0;

void* allocate(std::size_t size) {
    if (counting) ++allocations;
    if (void* const memory = std::malloc(size ? size : 1)) return memory;
    throw std::bad_alloc();
}

} // namespace

// Replaces the program's allocation functions, so that a test can count.
void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

// Where things lie in a weights file; its layout stands in data/feature-print/make-weights.
constexpr std::size_t versionAt = 8, countAt = 12, shapesAt = 64, numbersAt = shapesAt + 39 * 8,
                      digestBytes = 32;

std::string installedWeights() {
    std::ifstream file(FeaturePrintModel::defaultWeights(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// With a digest that fits the contents again, as in a file that somebody made on purpose.
std::string signedAgain(std::string file) {
    const std::size_t end = file.size() - digestBytes;
    files::Sha256 sha;
    sha.update(std::as_bytes(std::span(file).first(end)));
    const std::string digits = sha.finish();
    for (std::size_t i = 0; i < digestBytes; ++i)
        file[end + i] = static_cast<char>(std::stoi(digits.substr(2 * i, 2), nullptr, 16));
    return file;
}

std::string changed(std::string file, std::size_t at) {
    file[at] = static_cast<char>(file[at] ^ 1);
    return file;
}

FeaturePrintError failureOf(auto action) {
    try {
        action();
    } catch (const FeaturePrintError& error) {
        return error;
    }
    throw std::logic_error("nothing failed");
}

} // namespace

TEST(FeaturePrintModel, NamesTheNetworkThatTheRadiiBelongTo) {
    const FeaturePrintIdentity expected{"mobilenetv2-openimagesv4-block12",
                                        "70d16f258061ebc35a4aacfe3c3351803e2cb24f597e58a7ed456a869b0d5371",
                                        2};
    EXPECT_EQ(FeaturePrintModel().identity(), expected);
}

TEST(FeaturePrintModel, RefusesWeightsThatAreNotItsOwn) {
    const test::TemporaryFolder folder;
    const std::string good = installedWeights();
    const struct {
        const char* name;
        std::string contents;
        const char* reason;
    } cases[] = {
        {"empty", "", "its size"},
        {"cut", good.substr(0, good.size() - 1), "its size"},
        {"long", good + '\0', "its size"},
        {"zeros", std::string(good.size(), '\0'), "its checksum"},
        {"bit in the header", changed(good, versionAt), "its checksum"},
        {"bit in the numbers", changed(good, numbersAt + 700'001), "its checksum"},
        {"bit in the digest", changed(good, good.size() - 1), "its checksum"},
        {"something else", signedAgain(changed(good, 0)), "something else"},
        {"other version", signedAgain(changed(good, versionAt)), "another version"},
        {"fewer layers", signedAgain(changed(good, countAt)), "another network"},
        {"other layer", signedAgain(changed(good, shapesAt + 20 * 8 + 2)), "another network"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::filesystem::path path = folder.write(c.name, c.contents).path();
        const FeaturePrintError error = failureOf([&] { FeaturePrintModel model(path); });
        EXPECT_EQ(error.failure(), FeaturePrintFailure::unsupported);
        EXPECT_THAT(error.what(), AllOf(HasSubstr(path.string()), HasSubstr(c.reason),
                                        HasSubstr("Install Lumisort again")));
    }
    for (const auto& path : {folder.path() / "missing", folder.path()}) {
        const FeaturePrintError error = failureOf([&] { FeaturePrintModel model(path); });
        EXPECT_EQ(error.failure(), FeaturePrintFailure::unsupported);
        EXPECT_THAT(error.what(), HasSubstr("Install Lumisort again"));
    }
}

TEST(FeaturePrintModel, HasNoPrintForWhatHasNoFeatures) {
    const test::TemporaryFolder folder;
    FeaturePrintModel::Scratch scratch;
    const FeaturePrintModel model;
    for (const auto& picture :
         {std::make_shared<images::Bitmap>(), std::make_shared<images::Bitmap>(70'000, 1)})
        EXPECT_EQ(failureOf([&] { model.print(*picture, scratch); }).failure(), FeaturePrintFailure::noPrint);
    std::string zero = installedWeights();
    std::fill(zero.begin() + numbersAt, zero.end() - digestBytes, '\0');
    const FeaturePrintModel nothing(folder.write("zero", signedAgain(zero)).path());
    const auto print = [&] { nothing.print(test::picture(9, 9, 1), scratch); };
    EXPECT_EQ(failureOf(print).failure(), FeaturePrintFailure::noPrint);
}

TEST(FeaturePrintModel, GivesOneResultForAnyNumberOfWorkers) {
    const FeaturePrintModel model;
    std::vector<images::Bitmap> pictures;
    std::vector<FeaturePrint> expected;
    FeaturePrintModel::Scratch scratch;
    for (unsigned i = 0; i < 5; ++i) {
        pictures.push_back(test::picture(150 + 97 * i, 900 - 101 * i, i, i == 3));
        expected.push_back(model.print(pictures.back(), scratch));
    }
    std::vector<std::atomic<int>> agreed(pictures.size());
    {
        std::vector<std::jthread> workers;
        for (std::size_t worker = 0; worker < 3; ++worker)
            workers.emplace_back([&, worker] {
                FeaturePrintModel::Scratch own;
                for (std::size_t i = 0; i < pictures.size(); ++i) {
                    const std::size_t next = (i * (worker + 1) + worker) % pictures.size();
                    agreed[next] += model.print(pictures[next], own) == expected[next];
                }
            });
    }
    for (std::size_t i = 0; i < agreed.size(); ++i) EXPECT_EQ(agreed[i], 3) << i;
}

TEST(FeaturePrintModel, AllocatesNothingForAPrint) {
    const FeaturePrintModel model;
    FeaturePrintModel::Scratch scratch;
    const images::Bitmap wide = test::picture(1024, 683, 1), tall = test::picture(300, 1024, 2);
    const images::Bitmap wider = test::picture(1500, 100, 3);
    model.print(tall, scratch); // the first call of all chooses the instruction set
    counting = true;
    const FeaturePrint print = model.print(wide, scratch);
    model.print(tall, scratch);
    const int forThumbnails = std::exchange(allocations, 0);
    model.print(wider, scratch);
    const int forWider = std::exchange(allocations, 0);
    model.print(wider, scratch);
    counting = false;
    EXPECT_EQ(forThumbnails, 0);
    EXPECT_GT(forWider, 0); // the counter counts
    EXPECT_EQ(allocations, 0);
    EXPECT_EQ(print, model.print(wide, scratch));
}
