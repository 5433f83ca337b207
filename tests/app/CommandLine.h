#pragma once

#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <rapidjson/document.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace lumisort::app {

inline std::string contentsOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

struct Finished {
    int status = -1; ///< exit status, or −signal
    std::string out, err;

    rapidjson::Document json() const {
        rapidjson::Document document;
        document.Parse(out.c_str());
        EXPECT_FALSE(document.HasParseError()) << out;
        return document;
    }
};

/// Runs the program in a folder of its own.
class CommandLineTest : public testing::Test {
protected:
    void SetUp() override { setenv("XDG_CACHE_HOME", (folder_.path() / "cache").c_str(), 1); }

    pid_t start(const std::vector<std::string>& arguments, const std::string& program = LUMISORT_PROGRAM) {
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, (folder_.path() / "out").c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0600);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, (folder_.path() / "err").c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0600);
        std::vector<std::string> words{program};
        words.insert(words.end(), arguments.begin(), arguments.end());
        std::vector<char*> argv;
        for (auto& word : words) argv.push_back(word.data());
        argv.push_back(nullptr);
        pid_t child = 0;
        EXPECT_EQ(posix_spawn(&child, program.c_str(), &actions, nullptr, argv.data(), environ), 0);
        posix_spawn_file_actions_destroy(&actions);
        return child;
    }

    Finished finish(pid_t child) {
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status),
                contentsOf(folder_.path() / "out"), contentsOf(folder_.path() / "err")};
    }

    Finished run(const std::vector<std::string>& arguments) { return finish(start(arguments)); }

    std::string photos() const { return (folder_.path() / "photos").string(); }
    std::string destination() const {
        const auto path = folder_.path() / "destination";
        std::filesystem::create_directories(path);
        return path.string();
    }

    test::TemporaryFolder folder_;
};

} // namespace lumisort::app
