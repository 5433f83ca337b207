#include "app/commandline/Matches.h"

#include "app/commandline/Json.h"
#include "app/commandline/Text.h"
#include "platform/images/Decoder.h"
#include "platform/text/ByteCount.h"
#include "similarity/ExactCopies.h"
#include "similarity/NearDuplicateScan.h"
#include "similarity/featureprint/FeaturePrintModel.h"
#include "similarity/visual/VisionSimilarityEngine.h"

namespace lumisort::app {

namespace {

void printGroup(const similarity::SimilarityGroup& group, std::size_t number, std::ostream& out) {
    out << "Group " << number << " · " << counted(std::ssize(group.photos), "photo") << '\n';
    for (const auto& photo : group.photos) {
        out << "  " << printable(photo.url.path()) << "  " << text::byteCount(photo.bytes);
        if (const auto found = group.distances.find(photo.url); found != group.distances.end())
            out << "  distance " << found->second;
        out << '\n';
    }
    out << '\n';
}

void writeGroup(json::Writer& json, const similarity::SimilarityGroup& group) {
    json.beginObject();
    json.key("anchor").url(group.anchor.url);
    json.key("photos").beginArray();
    for (const auto& photo : group.photos) json.url(photo.url);
    json.endArray();
    json.key("distances").beginObject();
    for (const auto& photo : group.photos) // in the order of the photos, which a hash map has not
        if (const auto found = group.distances.find(photo.url); found != group.distances.end())
            json.key(photo.url.string()).number(found->second);
    json.endObject();
    json.endObject();
}

} // namespace

bool Matches::failed() const {
    return failedCount.value_or(0) > 0 || unreadable.value_or(0) > 0 || (failures && !failures->empty());
}

Matches exactMatches(const std::vector<library::Photo>& photos, similarity::SimilarityLevel,
                     Surroundings& with) {
    with.progress.show(-1, "Comparing files…");
    auto [groups, failed] = similarity::findExactCopies(files::FileSystem::real(), photos, {}, with.stop);
    Matches matches{.failedCount = failed};
    for (auto& group : groups)
        matches.groups.push_back({.anchor = group.front(), .photos = std::move(group)});
    return matches;
}

Matches nearMatches(const std::vector<library::Photo>& photos, similarity::SimilarityLevel level,
                    Surroundings& with) {
    auto result = similarity::SimilarityEngine::scan(
        similarity::SimilarityEngine::ScanServices::real(), photos, level, {}, images::mostDecodesAtOnce,
        [&](std::size_t completed, std::size_t total) {
            const bool grouping = completed == total;
            with.progress.show(
                static_cast<double>(completed) / static_cast<double>(std::max<std::size_t>(total, 1)),
                grouping ? "Grouping matches…"
                         : "Analyzing " + std::to_string(completed) + " of " + std::to_string(total) + "…");
        },
        with.stop);
    return {
        .groups = std::move(result.groups), .unreadable = result.unreadable, .lowDetail = result.lowDetail};
}

Matches visualMatches(const std::vector<library::Photo>& photos, similarity::SimilarityLevel level,
                      Surroundings& with) {
    const similarity::VisionSimilarityEngine engine(
        similarity::FeaturePrintService::of(std::make_shared<const similarity::FeaturePrintModel>()),
        files::FileSystem::real(), time::Clock::system());
    auto result = engine.scan(
        photos, level, {}, images::mostDecodesAtOnce,
        [&](double fraction, std::string_view text) { with.progress.show(fraction, text); }, with.stop);
    return {.groups = std::move(result.groups), .failures = std::move(result.failures)};
}

void printText(const Matches& matches, std::ostream& out) {
    std::size_t number = 0;
    for (const auto& group : matches.groups) printGroup(group, ++number, out);
    out << counted(std::ssize(matches.groups), "group");
    if (matches.failedCount.value_or(0)) out << " · " << *matches.failedCount << " unreadable";
    if (matches.unreadable.value_or(0)) out << " · " << *matches.unreadable << " unreadable";
    if (matches.lowDetail.value_or(0)) out << " · " << *matches.lowDetail << " low-detail skipped";
    if (matches.failures && !matches.failures->empty()) out << " · " << matches.failures->size() << " failed";
    out << '\n';
}

void printJson(const Matches& matches, std::ostream& out) {
    printJson(out, [&](json::Writer& json) {
        json.beginObject();
        json.key("groups").beginArray();
        for (const auto& group : matches.groups) writeGroup(json, group);
        json.endArray();
        if (matches.failedCount) json.key("failed").integer(*matches.failedCount);
        if (matches.unreadable) json.key("unreadable").integer(*matches.unreadable);
        if (matches.lowDetail) json.key("lowDetail").integer(*matches.lowDetail);
        if (matches.failures) {
            json.key("failures").beginArray();
            for (const auto& line : *matches.failures) json.text(line);
            json.endArray();
        }
        json.endObject();
    });
}

} // namespace lumisort::app
