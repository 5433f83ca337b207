#pragma once

#include <cstddef>
#include <memory_resource>

namespace lumisort::similarity {

/// Memory that the system is asked to back with pages of 2 MiB. Random access over tens of megabytes spends
/// much of its time looking up pages; large ones are few enough to be remembered by the processor. For large
/// blocks.
class HugePages : public std::pmr::memory_resource {
private:
    void* do_allocate(std::size_t bytes, std::size_t alignment) override;
    void do_deallocate(void* block, std::size_t bytes, std::size_t alignment) override;
    bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override;
};

} // namespace lumisort::similarity
