#pragma once

#include <cstddef>
#include <cstdint>
#include <sys/mman.h>

namespace ombrel {

/// Asks the system to back a large block of fresh memory with huge pages: filling hundreds of megabytes in
/// pages of 4 KiB costs as much as making what is put there. Only a hint; small blocks are left alone, and so
/// are the ragged ends, so that memory outside of the block is never concerned.
inline void adviseHugePages(void* block, std::size_t bytes) {
    constexpr std::size_t hugePage = std::size_t{1} << 21;
    if (bytes < 2 * hugePage) {
        return;
    }
    const std::size_t lead = -reinterpret_cast<std::uintptr_t>(block) & (hugePage - 1);
    madvise(static_cast<std::byte*>(block) + lead, (bytes - lead) & ~(hugePage - 1), MADV_HUGEPAGE);
}

} // namespace ombrel
