#include "platform/json/Writer.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <simdjson.h>

#include <cmath>
#include <stdexcept>

namespace lumisort::json {

namespace {

constexpr std::size_t pieceBytes = 256 * 1024;

/// Length of the well-formed UTF-8 character at the start of `bytes`, 0 when there is none.
std::size_t characterLength(std::string_view bytes) {
    for (std::size_t length = 1; length <= 4 && length <= bytes.size(); ++length) {
        if (simdjson::validate_utf8(bytes.data(), length)) return length;
    }
    return 0;
}

std::string withReplacements(std::string_view bytes) {
    std::string result;
    while (!bytes.empty()) {
        const std::size_t length = characterLength(bytes);
        result += length == 0 ? std::string_view("\xEF\xBF\xBD") : bytes.substr(0, length);
        bytes.remove_prefix(length == 0 ? 1 : length);
    }
    return result;
}

} // namespace

struct Writer::State {
    explicit State(Sink to) : sink(std::move(to)) {}

    Sink sink;
    rapidjson::StringBuffer buffer{nullptr, pieceBytes + 4096};
    rapidjson::Writer<rapidjson::StringBuffer> writer{buffer};
};

Writer::Writer(Sink sink) : state_(std::make_unique<State>(std::move(sink))) {}
Writer::~Writer() = default;

void Writer::passOn() {
    if (state_->buffer.GetSize() >= pieceBytes) finish();
}

void Writer::finish() {
    const std::string_view piece(state_->buffer.GetString(), state_->buffer.GetSize());
    if (!piece.empty()) state_->sink(piece);
    state_->buffer.Clear();
}

void Writer::beginObject() {
    state_->writer.StartObject();
}
void Writer::endObject() {
    state_->writer.EndObject();
    passOn();
}
void Writer::beginArray() {
    state_->writer.StartArray();
}
void Writer::endArray() {
    state_->writer.EndArray();
    passOn();
}

Writer& Writer::key(std::string_view name) {
    text(name);
    return *this;
}

void Writer::boolean(bool value) {
    state_->writer.Bool(value);
}

void Writer::integer(std::int64_t value) {
    state_->writer.Int64(value);
    passOn();
}

void Writer::number(double value) {
    if (!std::isfinite(value)) throw std::invalid_argument("JSON holds finite numbers only");
    state_->writer.Double(value);
    passOn();
}

void Writer::text(std::string_view value) {
    const bool plain = simdjson::validate_utf8(value.data(), value.size());
    const std::string replaced = plain ? std::string() : withReplacements(value);
    if (!plain) value = replaced;
    state_->writer.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
    passOn();
}

void Writer::url(const files::FileUrl& value) {
    text(value.string());
}
void Writer::timestamp(time::Timestamp value) {
    number(value.secondsSince2001());
}

std::string toText(const std::function<void(Writer&)>& write) {
    std::string whole;
    Writer out([&whole](std::string_view piece) { whole += piece; });
    write(out);
    out.finish();
    return whole;
}

} // namespace lumisort::json
