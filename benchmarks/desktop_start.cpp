// From the start of the process to the first frame of the window, with an empty library, against a window of
// one rectangle in a program of its own. Both in turn, after a first round that only warms. Needs a screen:
//
//   xvfb-run benchmark-desktop_start

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

constexpr int rounds = 15;

struct Start {
    double wallMS = 0, processorMS = 0;
};

/// Until the program's first line, which says what processor time it has used.
Start startOnce(std::vector<std::string> words) {
    int ends[2];
    if (pipe(ends) != 0) std::abort();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, ends[0]);
    std::vector<char*> arguments;
    for (auto& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);

    const auto begin = std::chrono::steady_clock::now();
    pid_t child = 0;
    if (posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), environ) != 0) std::abort();
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    char line[64] = {};
    const auto length = read(ends[0], line, sizeof line - 1);
    const auto end = std::chrono::steady_clock::now();
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (length <= 0 || status != 0) {
        std::fprintf(stderr, "%s did not show a window\n", arguments[0]);
        std::exit(1);
    }
    return {std::chrono::duration<double, std::milli>(end - begin).count(), std::atof(line)};
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

struct Starts {
    std::vector<double> wallMS, processorMS;
    void add(const Start& start) {
        wallMS.push_back(start.wallMS);
        processorMS.push_back(start.processorMS);
    }
};

} // namespace

int main() {
    const auto folder =
        std::filesystem::temp_directory_path() / ("lumisort-start-" + std::to_string(getpid()));
    const std::vector<std::string> bareWords{LUMISORT_BARE_WINDOW};
    const std::vector<std::string> words{LUMISORT_PROGRAM, "--first-frame", "--library",
                                         (folder / "library.json").string()};
    Starts bare, lumisort;
    startOnce(bareWords);
    startOnce(words);
    for (int round = 0; round < rounds; ++round) {
        bare.add(startOnce(bareWords));
        lumisort.add(startOnce(words));
    }
    std::filesystem::remove_all(folder);
    std::printf("start to first frame, empty library, medians of %d\n", rounds);
    std::printf("%-16s %10s %10s %8s\n", "", "bare, ms", "lumisort", "ratio");
    const auto row = [](const char* name, double a, double b) {
        std::printf("%-16s %10.1f %10.1f %8.2f\n", name, a, b, b / a);
    };
    row("elapsed", median(bare.wallMS), median(lumisort.wallMS));
    row("processor time", median(bare.processorMS), median(lumisort.processorMS));
}
