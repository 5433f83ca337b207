#pragma once

#include "platform/files/FileUrl.h"
#include "platform/json/FormatError.h"
#include "platform/time/Timestamp.h"

#include <simdjson.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace lumisort::json {

/// A value in a text that is being read from front to back: read it once, before the next one is asked for.
using Value = simdjson::ondemand::value;

/// Reads one JSON text whose root is an object or an array. Throws FormatError, also when anything but white
/// space follows the root.
void parse(std::string text, const std::function<void(Value)>& read);

/// The readers of single values throw FormatError on any other type and on numbers out of range.
std::int64_t integer(Value value);
double number(Value value);
/// Valid until the whole text is read.
std::string_view text(Value value);
files::FileUrl url(Value value);
time::Timestamp timestamp(Value value);
bool isNull(Value value);

/// Throws for a failed step of the parser.
[[noreturn]] void fail(simdjson::error_code code, std::string_view expected);

/// Calls `read(key, value)` for each member of an object, in the order of the text. A value that `read`
/// leaves alone is skipped.
template <class Read>
void eachField(Value value, Read&& read) {
    simdjson::ondemand::object object;
    if (const auto code = value.get_object().get(object)) fail(code, "an object is expected");
    for (auto result : object) {
        simdjson::ondemand::field field;
        if (const auto code = std::move(result).get(field)) fail(code, "");
        std::string_view key;
        if (const auto code = field.unescaped_key().get(key)) fail(code, "");
        try {
            read(key, field.value());
        } catch (const FormatError& error) {
            throw error.inField(key);
        }
    }
}

/// Calls `read(value)` for each element of an array.
template <class Read>
void eachElement(Value value, Read&& read) {
    simdjson::ondemand::array array;
    if (const auto code = value.get_array().get(array)) fail(code, "an array is expected");
    std::size_t index = 0;
    for (auto result : array) {
        try {
            Value element;
            if (const auto code = std::move(result).get(element)) fail(code, "");
            read(element);
        } catch (const FormatError& error) {
            throw error.inElement(index);
        }
        ++index;
    }
}

/// The value of a key that must be there.
template <class T>
T required(std::optional<T>&& value, std::string_view key) {
    if (!value) throw FormatError("is missing").inField(key);
    return *std::move(value);
}

} // namespace lumisort::json
