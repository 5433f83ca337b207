#include "organize/ItemJson.h"

#include <algorithm>
#include <optional>

namespace lumisort::organize {

namespace {

std::string digest(json::Value value) {
    const std::string_view text = json::text(value);
    const bool valid = text.size() == 64 && std::ranges::all_of(text, [](char c) {
                           return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
                       });
    if (!valid) throw json::FormatError("64 lower-case hexadecimal digits are expected");
    return std::string(text);
}

} // namespace

void writeItem(json::Writer& out, const OrganizeItem& item) {
    out.beginObject();
    out.key("source").url(item.source);
    out.key("destination").url(item.destination);
    out.key("digest").text(item.digest);
    out.key("bytes").integer(item.bytes);
    out.endObject();
}

OrganizeItem readItem(json::Value value) {
    std::optional<files::FileUrl> source, destination;
    std::optional<std::string> sum;
    std::optional<std::int64_t> bytes;
    json::eachField(value, [&](std::string_view key, json::Value field) {
        if (key == "source") source = json::url(field);
        if (key == "destination") destination = json::url(field);
        if (key == "digest") sum = digest(field);
        if (key == "bytes") bytes = json::integer(field);
    });
    return {.source = json::required(std::move(source), "source"),
            .destination = json::required(std::move(destination), "destination"),
            .digest = json::required(std::move(sum), "digest"),
            .bytes = json::required(std::move(bytes), "bytes")};
}

} // namespace lumisort::organize
