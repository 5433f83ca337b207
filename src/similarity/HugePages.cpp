#include "similarity/HugePages.h"

#include <sys/mman.h>

#include <algorithm>
#include <new>

namespace lumisort::similarity {

namespace {
constexpr std::size_t pageBytes = std::size_t{2} << 20;
} // namespace

void* HugePages::do_allocate(std::size_t bytes, std::size_t alignment) {
    void* block = ::operator new(bytes, std::align_val_t{std::max(alignment, pageBytes)});
    madvise(block, bytes, MADV_HUGEPAGE); // a system without such pages refuses, which costs time only
    return block;
}

void HugePages::do_deallocate(void* block, std::size_t, std::size_t alignment) {
    ::operator delete(block, std::align_val_t{std::max(alignment, pageBytes)});
}

bool HugePages::do_is_equal(const std::pmr::memory_resource& other) const noexcept {
    return dynamic_cast<const HugePages*>(&other) != nullptr;
}

} // namespace lumisort::similarity
