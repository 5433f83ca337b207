#include "app/commandline/Matches.h"

#include "app/commandline/Json.h"
#include "app/commandline/Text.h"
#include "platform/text/ByteCount.h"
#include "similarity/database/StoredCaches.h"

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
    return result.unreadable > 0 || !result.failures.empty();
}

Matches findMatches(const std::vector<library::Photo>& photos, similarity::SimilarityMethod method,
                    similarity::SimilarityLevel level, StoredValues storedValues, Dependencies& deps) {
    if (method == similarity::SimilarityMethod::exact) deps.progress.show(-1, "Comparing files…");
    const auto progress = [&](double fraction, std::string_view text) { deps.progress.show(fraction, text); };
    similarity::MatchCaches known;
    if (storedValues == StoredValues::ignored || method == similarity::SimilarityMethod::exact)
        return {.method = method,
                .result = similarity::findMatches(photos, method, level, known, progress, deps.stop)};
    similarity::StoredCaches stored;
    Matches matches{.method = method,
                    .result = stored.findMatches(photos, method, level, known, progress, deps.stop)};
    stored.flush();
    if (const auto problem = stored.problem(); !problem.empty()) {
        deps.progress.clear();
        deps.notes << problem << '\n';
    }
    return matches;
}

void printText(const Matches& matches, std::ostream& out) {
    const auto& result = matches.result;
    std::size_t number = 0;
    for (const auto& group : result.groups) printGroup(group, ++number, out);
    out << counted(std::ssize(result.groups), "group");
    if (result.unreadable) out << " · " << result.unreadable << " unreadable";
    if (result.lowDetail) out << " · " << result.lowDetail << " low-detail skipped";
    if (!result.failures.empty()) out << " · " << result.failures.size() << " failed";
    out << '\n';
}

void printJson(const Matches& matches, std::ostream& out) {
    const auto& result = matches.result;
    printJson(out, [&](json::Writer& json) {
        json.beginObject();
        json.key("groups").beginArray();
        for (const auto& group : result.groups) writeGroup(json, group);
        json.endArray();
        switch (matches.method) { // the counts that the method has
        case similarity::SimilarityMethod::exact:
            json.key("failed").integer(result.unreadable);
            break;
        case similarity::SimilarityMethod::nearDuplicates:
            json.key("unreadable").integer(result.unreadable);
            json.key("lowDetail").integer(result.lowDetail);
            break;
        case similarity::SimilarityMethod::visual:
            json.key("failures").beginArray();
            for (const auto& line : result.failures) json.text(line);
            json.endArray();
            break;
        }
        json.endObject();
    });
}

} // namespace lumisort::app
