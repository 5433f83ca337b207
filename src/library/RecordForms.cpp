#include "library/RecordForms.h"

namespace lumisort::library {

using json::Value;

namespace {

std::optional<time::Timestamp> optionalTimestamp(Value value) {
    if (json::isNull(value)) return std::nullopt;
    return json::timestamp(value);
}

ReviewDecision readDecision(Value value) {
    const auto raw = json::text(value);
    const auto decision = reviewDecisionNames.find(raw);
    if (!decision) throw json::FormatError("“" + std::string(raw) + "” is no decision");
    return *decision;
}

} // namespace

void write(json::Writer& out, const Photo& photo) {
    out.beginObject();
    writeFields(out, photo);
    out.endObject();
}

void writeFields(json::Writer& out, const Photo& photo) {
    out.key("url").url(photo.url);
    out.key("bytes").integer(photo.bytes);
    out.key("width").integer(photo.width);
    out.key("height").integer(photo.height);
    if (photo.date) out.key("date").timestamp(*photo.date);
}

Photo readPhoto(Value value) {
    std::optional<files::FileUrl> url;
    std::optional<std::int64_t> bytes;
    std::optional<std::int64_t> width;
    std::optional<std::int64_t> height;
    std::optional<time::Timestamp> date;
    json::eachField(value, [&](std::string_view key, Value field) {
        if (key == "url") url = json::url(field);
        if (key == "bytes") bytes = json::integer(field);
        if (key == "width") width = json::integer(field);
        if (key == "height") height = json::integer(field);
        if (key == "date") date = optionalTimestamp(field);
    });
    return {json::required(std::move(url), "url"), json::required(std::move(bytes), "bytes"),
            json::required(std::move(width), "width"), json::required(std::move(height), "height"), date};
}

void write(json::Writer& out, const FileStamp& stamp) {
    out.beginObject();
    if (stamp.created) out.key("created").timestamp(*stamp.created);
    if (stamp.modified) out.key("modified").timestamp(*stamp.modified);
    out.key("size").integer(stamp.size);
    out.endObject();
}

FileStamp readStamp(Value value) {
    std::optional<std::int64_t> size;
    FileStamp stamp;
    json::eachField(value, [&](std::string_view key, Value field) {
        if (key == "size") size = json::integer(field);
        if (key == "modified") stamp.modified = optionalTimestamp(field);
        if (key == "created") stamp.created = optionalTimestamp(field);
    });
    stamp.size = json::required(std::move(size), "size");
    return stamp;
}

void write(json::Writer& out, const ReviewMark& mark) {
    out.beginObject();
    out.key("decision").text(storedName(mark.decision));
    out.key("stamp");
    write(out, mark.stamp);
    out.endObject();
}

ReviewMark readMark(Value value) {
    std::optional<ReviewDecision> decision;
    std::optional<FileStamp> stamp;
    json::eachField(value, [&](std::string_view key, Value field) {
        if (key == "decision") decision = readDecision(field);
        if (key == "stamp") stamp = readStamp(field);
    });
    return {json::required(std::move(decision), "decision"), json::required(std::move(stamp), "stamp")};
}

} // namespace lumisort::library
