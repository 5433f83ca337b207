#include "platform/text/Collation.h"

#include "platform/text/KeySort.h"

#include <unicode/bytestream.h>
#include <unicode/coll.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <utility>

namespace lumisort::text {

namespace {

bool isAscii(std::string_view bytes) {
    std::size_t i = 0;
    for (; i + 8 <= bytes.size(); i += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + i, 8);
        if (word & 0x8080808080808080U) return false;
    }
    for (; i < bytes.size(); ++i)
        if (static_cast<unsigned char>(bytes[i]) >= 0x80) return false;
    return true;
}

icu::StringPiece piece(std::string_view text) {
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

void require(UErrorCode status, const char* what) {
    if (U_FAILURE(status)) throw std::runtime_error(std::string(what) + ": " + u_errorName(status));
}

const icu::Normalizer2& composer() {
    UErrorCode status = U_ZERO_ERROR;
    const auto* instance = icu::Normalizer2::getNFCInstance(status);
    require(status, "Unicode normalization data");
    return *instance;
}

bool isCanonical(std::string_view text) {
    if (isAscii(text) || !isUtf8(text)) return true;
    UErrorCode status = U_ZERO_ERROR;
    const bool normalized = composer().isNormalizedUTF8(piece(text), status);
    return normalized && U_SUCCESS(status);
}

} // namespace

struct NaturalOrder::Impl {
    std::unique_ptr<icu::Collator> collator;
};

NaturalOrder::NaturalOrder() : impl_(nullptr) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icu::Locale::getRoot(), status));
    require(status, "Unicode collation data");
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    collator->setAttribute(UCOL_STRENGTH, UCOL_TERTIARY, status);
    require(status, "Unicode collation data");
    impl_ = new Impl{std::move(collator)};
}

NaturalOrder::~NaturalOrder() {
    delete impl_;
}

NaturalOrder::NaturalOrder(NaturalOrder&& other) noexcept : impl_(std::exchange(other.impl_, nullptr)) {}

NaturalOrder& NaturalOrder::operator=(NaturalOrder&& other) noexcept {
    std::swap(impl_, other.impl_);
    return *this;
}

std::string NaturalOrder::sortKey(std::string_view utf8) const {
    const auto text = icu::UnicodeString::fromUTF8(piece(utf8));
    std::array<std::uint8_t, 1024> room;
    const auto length = impl_->collator->getSortKey(text, room.data(), room.size());
    const auto keyBytes = static_cast<std::size_t>(length);
    std::string key;
    key.reserve(keyBytes + utf8.size());
    if (keyBytes <= room.size()) {
        key.append(reinterpret_cast<const char*>(room.data()), keyBytes);
    } else {
        key.resize(keyBytes);
        impl_->collator->getSortKey(text, reinterpret_cast<std::uint8_t*>(key.data()), length);
    }
    // The key ends in the only zero byte it has, so that what follows decides between equal keys alone.
    key += utf8;
    return key;
}

int NaturalOrder::compare(std::string_view a, std::string_view b) const {
    UErrorCode status = U_ZERO_ERROR;
    const auto order = impl_->collator->compareUTF8(piece(a), piece(b), status);
    if (U_SUCCESS(status) && order != UCOL_EQUAL) return order;
    return a.compare(b);
}

std::vector<std::size_t> naturalPermutation(const std::vector<std::string_view>& names) {
    const NaturalOrder order;
    std::vector<std::string> keys;
    keys.reserve(names.size());
    for (const auto name : names) keys.push_back(order.sortKey(name));
    return sortedPermutation(keys);
}

std::string canonicalForm(std::string_view path) {
    if (isCanonical(path)) return std::string(path);
    UErrorCode status = U_ZERO_ERROR;
    std::string composed;
    icu::StringByteSink<std::string> sink(&composed);
    composer().normalizeUTF8(0, piece(path), sink, nullptr, status);
    require(status, "Unicode normalization");
    return composed;
}

bool canonicalLess(std::string_view a, std::string_view b) {
    // UTF-8 orders bytes as it orders code points.
    if (isAscii(a) && isAscii(b)) return a < b;
    // Composition begins at a character and takes in what follows, so that an ASCII character before another
    // one never changes. Paths in a folder of a plain name mostly differ at such a place.
    const auto same = static_cast<std::size_t>(std::ranges::mismatch(a, b).in1 - a.begin());
    const auto isPlain = [same](std::string_view text) { return isAscii(text.substr(same, 2)); };
    if (isPlain(a) && isPlain(b) && isAscii(a.substr(0, same))) return a < b;
    if (isCanonical(a) && isCanonical(b)) return a < b;
    return canonicalForm(a) < canonicalForm(b);
}

std::vector<std::size_t> canonicalPermutation(const std::vector<std::string_view>& paths) {
    std::vector<std::string> keys;
    keys.reserve(paths.size());
    for (const auto path : paths) keys.push_back(canonicalForm(path));
    return sortedPermutation(keys);
}

bool isUtf8(std::string_view bytes) {
    if (isAscii(bytes)) return true;
    const auto* text = reinterpret_cast<const std::uint8_t*>(bytes.data());
    const auto length = static_cast<std::int32_t>(bytes.size());
    for (std::int32_t i = 0; i < length;) {
        UChar32 c = 0;
        U8_NEXT(text, i, length, c);
        if (c < 0) return false;
    }
    return true;
}

std::string lowerCase(std::string_view utf8) {
    if (isAscii(utf8)) {
        std::string lowered(utf8);
        for (char& c : lowered)
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        return lowered;
    }
    std::string lowered;
    lowered.reserve(utf8.size());
    const auto* text = reinterpret_cast<const std::uint8_t*>(utf8.data());
    const auto length = static_cast<std::int32_t>(utf8.size());
    for (std::int32_t i = 0; i < length;) {
        const auto start = i;
        UChar32 c = 0;
        U8_NEXT(text, i, length, c);
        if (c < 0) {
            lowered += utf8.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(i - start));
            continue;
        }
        std::array<std::uint8_t, U8_MAX_LENGTH> encoded{};
        std::int32_t used = 0;
        U8_APPEND_UNSAFE(encoded.data(), used, u_tolower(c));
        lowered.append(reinterpret_cast<const char*>(encoded.data()), static_cast<std::size_t>(used));
    }
    return lowered;
}

} // namespace lumisort::text
