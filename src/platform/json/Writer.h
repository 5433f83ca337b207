#pragma once

#include "platform/files/FileUrl.h"
#include "platform/time/Timestamp.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace lumisort::json {

/// Writes one compact JSON text, piece by piece, so that a document of any size needs little memory. Values
/// follow each other as they are written; inside an object each follows its key:
///
///     out.beginObject();
///     out.key("bytes").integer(photo.bytes);
///     out.endObject();
///
/// Used by one thread.
class Writer {
public:
    /// Takes the next piece of the text, about 256 KiB; what it throws comes out of the call that filled the
    /// piece.
    using Sink = std::function<void(std::string_view)>;

    explicit Writer(Sink sink);
    ~Writer();

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();
    Writer& key(std::string_view name);

    void boolean(bool value);
    void integer(std::int64_t value);
    /// The shortest digits that read back as exactly this number. JSON has no others than finite ones:
    /// throws std::invalid_argument on NaN and infinities.
    void number(double value);
    /// JSON holds Unicode only: bytes that are no UTF-8 become U+FFFD.
    void text(std::string_view value);
    /// The absolute URL string.
    void url(const files::FileUrl& value);
    /// Seconds since 2001-01-01 00:00:00 UTC.
    void timestamp(time::Timestamp value);

    /// Hands what is left to the sink. The text is complete then.
    void finish();

private:
    struct State;
    void passOn();

    std::unique_ptr<State> state_;
};

/// The text that `write` writes, in one piece.
std::string toText(const std::function<void(Writer&)>& write);

} // namespace lumisort::json
