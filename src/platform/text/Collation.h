#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace lumisort::text {

/// The order in which a file browser lists names: case-insensitive, digit runs compared as numbers
/// (img_1, IMG_2, IMG_10), through ICU's root collation. Bytes that are no UTF-8 compare as U+FFFD. Names
/// that differ in nothing else are told apart by letter case (lower first) and then by their bytes, so that a
/// listing does not depend on the order in which the file system hands out its entries.
/// One object serves one thread; making one costs milliseconds, comparing costs microseconds.
class NaturalOrder {
public:
    NaturalOrder();
    ~NaturalOrder();
    NaturalOrder(NaturalOrder&&) noexcept;
    NaturalOrder& operator=(NaturalOrder&&) noexcept;

    /// A key whose byte order is the natural order; for sorting many names, make each key once.
    std::string sortKey(std::string_view utf8) const;
    /// Below or above zero; zero only for identical bytes.
    int compare(std::string_view a, std::string_view b) const;

private:
    struct Impl;
    Impl* impl_;
};

/// The permutation that puts `names` into natural order; equal names keep their order. Thread-safe.
std::vector<std::size_t> naturalPermutation(const std::vector<std::string_view>& names);

/// `path` in Unicode normalization form C. Text that is no UTF-8 comes back as it is. Thread-safe.
std::string canonicalForm(std::string_view path);

/// Whether `a` comes before `b` when both are compared by code points after NFC normalization; texts that
/// are no UTF-8 compare by bytes. A strict weak order, thread-safe. To sort many, take the permutation.
bool canonicalLess(std::string_view a, std::string_view b);

/// The permutation that puts `paths` into the order of canonicalLess; equal ones keep their order.
/// Thread-safe.
std::vector<std::size_t> canonicalPermutation(const std::vector<std::string_view>& paths);

/// Whether `bytes` is well-formed UTF-8.
bool isUtf8(std::string_view bytes);

/// Simple lower case of `utf8` by Unicode's root rules, independent of the user's locale; bytes that are no
/// UTF-8 are kept.
std::string lowerCase(std::string_view utf8);

} // namespace lumisort::text
