#include "app/commandline/Command.h"
#include "app/commandline/Folders.h"
#include "app/commandline/Json.h"
#include "app/commandline/Text.h"
#include "platform/images/Decoder.h"
#include "platform/tasks/OrderedWorkers.h"
#include "similarity/Fingerprinting.h"

#include <CLI/CLI.hpp>

#include <array>
#include <cstdio>
#include <expected>

namespace lumisort::app {

namespace {

struct FingerprintOptions {
    std::vector<std::string> files;
    bool json = false;
};

using Outcome = std::expected<similarity::VisualFingerprint, std::string>;

std::string hexadecimal(std::uint64_t hash) {
    std::array<char, 17> digits{};
    std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(hash));
    return digits.data();
}

Outcome fingerprint(const files::FileUrl& url, const std::stop_token& stop) {
    try {
        return similarity::fingerprint(url, stop);
    } catch (const images::ImageError& error) {
        return std::unexpected(error.what());
    }
}

void write(json::Writer& json, const files::FileUrl& url, const Outcome& outcome) {
    json.beginObject();
    json.key("url").url(url);
    if (!outcome) {
        json.key("error").text(outcome.error());
    } else {
        json.key("hash").text(hexadecimal(outcome->hash));
        json.key("orientationHashes").beginArray();
        for (const auto hash : outcome->orientationHashes) json.text(hexadecimal(hash));
        json.endArray();
        json.key("aspect").number(outcome->aspect);
        json.key("deviation").number(outcome->deviation);
        json.key("colors").beginArray();
        for (const double value : outcome->colors) json.number(value);
        json.endArray();
    }
    json.endObject();
}

void print(std::ostream& out, const files::FileUrl& url, const Outcome& outcome) {
    out << printable(url.path()) << "  ";
    if (!outcome) {
        out << outcome.error() << '\n';
        return;
    }
    std::array<char, 64> shape{};
    std::snprintf(shape.data(), shape.size(), "  aspect %.4f  deviation %.4f\n", outcome->aspect,
                  outcome->deviation);
    out << hexadecimal(outcome->hash) << shape.data();
}

ExitStatus fingerprints(const FingerprintOptions& options, Dependencies& deps) {
    std::vector<files::FileUrl> urls;
    for (const auto& file : options.files) urls.push_back(fileArgument(file));
    const auto outcomes = tasks::orderedWorkers(
        urls.size(), images::mostDecodesAtOnce,
        [&](std::size_t index, const std::stop_token& stop) {
            return std::optional(fingerprint(urls[index], stop));
        },
        [&](std::size_t completed) {
            const auto total = static_cast<double>(urls.size());
            deps.progress.show(static_cast<double>(completed) / total, "Analyzing photos…");
        },
        deps.stop);
    deps.progress.clear();

    bool failed = false;
    for (const auto& outcome : outcomes) failed = failed || !outcome->has_value();
    if (options.json) {
        printJson(deps.out, [&](json::Writer& json) {
            json.beginArray();
            for (std::size_t i = 0; i < urls.size(); ++i) write(json, urls[i], *outcomes[i]);
            json.endArray();
        });
    } else {
        for (std::size_t i = 0; i < urls.size(); ++i) print(deps.out, urls[i], *outcomes[i]);
    }
    return failed ? ExitStatus::doneWithFailures : ExitStatus::done;
}

} // namespace

void addFingerprintCommand(CLI::App& program, Command& chosen) {
    auto* command = program.add_subcommand("fingerprint", "Show the visual fingerprint of photos");
    const auto options = std::make_shared<FingerprintOptions>();
    command->add_option("FILE", options->files, "Photos")->required();
    command->add_flag("--json", options->json, "Print JSON");
    command->callback([options, &chosen] {
        chosen = [options](Dependencies& deps) { return fingerprints(*options, deps); };
    });
}

} // namespace lumisort::app
