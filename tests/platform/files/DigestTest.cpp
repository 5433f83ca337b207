#include "platform/files/Digest.h"

#include "platform/tasks/Cancellation.h"
#include "support/MemoryFileSystem.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace lumisort::files {

namespace {

TEST(Digest, EqualsPublishedValues) {
    // FIPS 180-2, appendix B, and the digest of no bytes.
    const std::pair<std::string, const char*> cases[] = {
        {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {std::string(1'000'000, 'a'), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
    };
    test::MemoryFileSystem system;
    for (const auto& [contents, digest] : cases) {
        system.write("/a", contents);
        EXPECT_EQ(sha256(system, "/a", {}), digest);
    }
}

TEST(Digest, TakesEveryByteAtTheBordersOfItsPieces) {
    test::MemoryFileSystem system;
    for (const std::size_t bytes : {digestChunkBytes - 1, digestChunkBytes, 2 * digestChunkBytes + 1}) {
        std::string contents(bytes, 'x');
        contents.back() = 'y';
        system.write("/a", contents);
        Sha256 whole;
        whole.update(std::as_bytes(std::span(contents)));
        EXPECT_EQ(sha256(system, "/a", {}), whole.finish());
    }
}

TEST(Digest, StopsBeforeTheFirstPieceAndAfterEachOne) {
    test::MemoryFileSystem system;
    system.write("/a", std::string(3 * digestChunkBytes, 'x'));
    for (const int stopAt : {0, 1, 2}) {
        std::stop_source source;
        int reads = 0;
        if (stopAt == 0) source.request_stop();
        system.before = [&](std::string_view operation, const std::string&) {
            if (operation == "read" && ++reads == stopAt) source.request_stop();
        };
        EXPECT_THROW(sha256(system, "/a", source.get_token()), tasks::Cancelled);
        EXPECT_EQ(reads, stopAt);
    }
}

TEST(Digest, AReadErrorNamesTheFile) {
    test::MemoryFileSystem system;
    system.write("/a", "contents");
    system.failReads("/a", EIO);
    try {
        sha256(system, "/a", {});
        FAIL() << "a digest of a file that cannot be read";
    } catch (const FileError& error) {
        EXPECT_STREQ(error.what(), "Could not read “/a”: Input/output error");
    }
}

} // namespace

} // namespace lumisort::files
