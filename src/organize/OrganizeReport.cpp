#include "organize/OrganizeReport.h"

#include "organize/ItemJson.h"
#include "organize/ReportText.h"
#include "platform/json/Document.h"

namespace lumisort::organize {

namespace {

OrganizeReport readRoot(json::Value root) {
    std::optional<std::vector<OrganizeItem>> copied;
    std::optional<std::int64_t> duplicates;
    std::optional<std::vector<std::string>> failures;
    std::int64_t alreadyThere = 0;
    std::optional<files::FileUrl> logURL;
    json::eachField(root, [&](std::string_view key, json::Value value) {
        if (key == "copied")
            json::eachElement(
                value, [&list = copied.emplace()](json::Value item) { list.push_back(readItem(item)); });
        if (key == "duplicates") duplicates = json::integer(value);
        if (key == "alreadyThere") alreadyThere = json::integer(value);
        if (key == "failures")
            json::eachElement(value, [&list = failures.emplace()](json::Value line) {
                list.emplace_back(json::text(line));
            });
        if (key == "logURL" && !json::isNull(value)) logURL = json::url(value);
    });
    return {.copied = json::required(std::move(copied), "copied"),
            .duplicates = json::required(std::move(duplicates), "duplicates"),
            .failures = json::required(std::move(failures), "failures"),
            .alreadyThere = alreadyThere,
            .logURL = std::move(logURL)};
}

} // namespace

std::string toJson(const OrganizeReport& report) {
    return ReportText(report).text();
}

std::string toJson(const OrganizePlan& plan) {
    return json::toText([&plan](json::Writer& out) {
        out.beginObject();
        out.key("root").url(plan.root);
        out.key("items").beginArray();
        for (const auto& item : plan.items) writeItem(out, item);
        out.endArray();
        out.key("duplicates").integer(plan.duplicates);
        if (plan.alreadyThere > 0) out.key("alreadyThere").integer(plan.alreadyThere);
        out.key("failures").beginArray();
        for (const auto& line : plan.failures) out.text(line);
        out.endArray();
        out.endObject();
    });
}

OrganizeReport reportFromJson(std::string text) {
    std::optional<OrganizeReport> report;
    json::parse(std::move(text), [&report](json::Value root) { report = readRoot(root); });
    return *std::move(report);
}

OrganizeReport readReport(files::FileSystem& system, const files::FileUrl& url) {
    std::optional<OrganizeReport> report;
    json::readDocument(system, url.path(), [&report](json::Value root) { report = readRoot(root); });
    return *std::move(report);
}

} // namespace lumisort::organize
