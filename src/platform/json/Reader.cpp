#include "platform/json/Reader.h"

namespace lumisort::json {

void fail(simdjson::error_code code, std::string_view expected) {
    using namespace simdjson;
    switch (code) {
    case INCORRECT_TYPE:
    case NUMBER_ERROR:
    case NUMBER_OUT_OF_RANGE:
        if (!expected.empty()) throw FormatError(std::string(expected));
        break;
    case UTF8_ERROR:
        throw FormatError("the text is no UTF-8");
    case EMPTY:
        throw FormatError("the file is empty");
    case MEMALLOC:
        throw FormatError("not enough memory");
    default:
        break;
    }
    throw FormatError("no well-formed JSON");
}

std::int64_t integer(Value value) {
    std::int64_t result = 0;
    if (const auto code = value.get_int64().get(result)) fail(code, "a whole number is expected");
    return result;
}

double number(Value value) {
    double result = 0;
    if (const auto code = value.get_double().get(result)) fail(code, "a number is expected");
    return result;
}

std::string_view text(Value value) {
    std::string_view result;
    if (const auto code = value.get_string().get(result)) fail(code, "a text is expected");
    return result;
}

files::FileUrl url(Value value) {
    auto result = files::FileUrl::fromString(text(value));
    if (!result) throw FormatError("a file URL is expected");
    return *std::move(result);
}

time::Timestamp timestamp(Value value) {
    return time::Timestamp(number(value));
}

bool isNull(Value value) {
    bool null = false;
    if (const auto code = value.is_null().get(null)) fail(code, "");
    return null;
}

void parse(std::string text, const std::function<void(Value)>& read) {
    text.reserve(text.size() + simdjson::SIMDJSON_PADDING);
    simdjson::ondemand::parser parser;
    simdjson::ondemand::document document;
    if (const auto code = parser.iterate(text).get(document)) fail(code, "");
    Value root;
    if (const auto code = document.get_value().get(root)) fail(code, "");
    read(root);
    if (document.current_location().error() != simdjson::OUT_OF_BOUNDS)
        throw FormatError("something follows the end");
}

} // namespace lumisort::json
