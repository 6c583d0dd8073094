#pragma once

#include <cstddef>
#include <cstdint>
#include <sys/mman.h>

namespace ombrel {

/// Asks the system to back a large block of fresh memory with huge pages: filling hundreds of megabytes in
/// pages of 4 KiB costs as much as making what is put there. Only a hint; small blocks are left alone, and so
/// are the ragged ends, so that memory outside of the block is never concerned.
inline void adviseHugePages(const void* block, std::size_t bytes) {
    constexpr std::uintptr_t hugePage = std::uintptr_t{1} << 21;
    if (bytes < 2 * hugePage) {
        return;
    }
    const auto begin = (reinterpret_cast<std::uintptr_t>(block) + hugePage - 1) & ~(hugePage - 1);
    const auto end = (reinterpret_cast<std::uintptr_t>(block) + bytes) & ~(hugePage - 1);
    if (begin < end) {
        madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
    }
}

} // namespace ombrel
