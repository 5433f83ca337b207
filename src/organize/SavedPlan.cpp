#include "organize/SavedPlan.h"

#include "organize/ItemJson.h"
#include "organize/OrganizeReport.h"
#include "organize/RunFolder.h"
#include "platform/files/AtomicFile.h"
#include "platform/json/Document.h"
#include "platform/json/Writer.h"

#include <algorithm>
#include <optional>

namespace lumisort::organize {

namespace {

constexpr std::int64_t supportedVersion = 1;

std::int64_t versionOf(json::Value root) {
    std::int64_t version = 0;
    json::eachField(root, [&](std::string_view key, json::Value field) {
        if (key == "version") version = json::integer(field);
    });
    return version;
}

OrganizePlan readPlan(json::Value root) {
    std::optional<files::FileUrl> folder;
    std::optional<std::vector<OrganizeItem>> items;
    OrganizePlan plan;
    json::eachField(root, [&](std::string_view key, json::Value field) {
        if (key == "root") folder = json::url(field);
        if (key == "skipDuplicates") plan.skipDuplicates = json::integer(field) != 0;
        if (key == "items") {
            items.emplace();
            json::eachElement(field, [&](json::Value item) { items->push_back(readItem(item)); });
        }
    });
    plan.root = json::required(std::move(folder), "root");
    plan.items = json::required(std::move(items), "items");
    return plan;
}

} // namespace

void savePlan(files::FileSystem& system, const OrganizePlan& plan) {
    const auto path = plan.root.child(savedPlanName).path();
    files::replaceFile(system, path, [&](files::OpenFile& file) {
        json::Writer out([&](std::string_view piece) { file.write(std::as_bytes(std::span(piece))); });
        out.beginObject();
        out.key("version").integer(supportedVersion);
        out.key("root").url(plan.root);
        out.key("skipDuplicates").integer(plan.skipDuplicates ? 1 : 0);
        out.key("items").beginArray();
        for (const auto& item : plan.items) writeItem(out, item);
        out.endArray();
        out.endObject();
        out.finish();
    });
}

OrganizePlan savedPlan(files::FileSystem& system, const files::FileUrl& run) {
    const auto path = run.child(savedPlanName).path();
    requireRegularFile(system, path);
    std::int64_t version = 0;
    json::readDocument(system, path, [&](json::Value root) { version = versionOf(root); });
    if (version != supportedVersion)
        throw files::FileError("read", path, "It is of a version that is not known here");
    OrganizePlan plan;
    json::readDocument(system, path, [&](json::Value root) { plan = readPlan(root); });
    return plan;
}

std::vector<UnfinishedRun> unfinishedRuns(files::FileSystem& system, const files::FileUrl& destination) {
    std::vector<UnfinishedRun> runs;
    for (const auto& folder : runFolders(system, destination)) {
        try {
            requireRegularFile(system, folder.child(savedPlanName).path());
            if (isUnderWay(system, folder)) continue;
            const auto plan = savedPlan(system, folder);
            const auto report = readReport(system, folder.child(reportFileName));
            runs.push_back({folder, std::ssize(plan.items), std::ssize(report.copied)});
        } catch (const files::FileError&) { // NOLINT(bugprone-empty-catch): see the header
        }
    }
    // Their names begin with the time.
    std::ranges::sort(runs, std::greater(), &UnfinishedRun::folder);
    return runs;
}

} // namespace lumisort::organize
