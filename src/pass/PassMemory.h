#pragma once

#include <ombrel/hugePages.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace ca::formatting {

/// Hands out memory for the entries of tables and takes none of it back before it dies: there are so many
/// entries that taking and freeing them one by one would cost more than all that the nodes do, and entries
/// that are made one after the other lie side by side.
class PassMemory {
public:
    PassMemory() = default;
    PassMemory(const PassMemory&) = delete;
    PassMemory& operator=(const PassMemory&) = delete;

    /// Memory aligned to 8 bytes. Throws std::bad_alloc.
    void* allocate(std::size_t bytes) {
        const std::size_t rounded = (bytes + alignment - 1) / alignment * alignment;
        if (rounded > room) {
            addBlock(rounded);
        }
        void* memory = next;
        next += rounded;
        room -= rounded;
        return memory;
    }

    static constexpr std::size_t alignment = 8;

private:
    /// Each block is twice as large as the one before, so a small pass takes little and a large one few.
    void addBlock(std::size_t bytes) {
        const std::size_t size = std::max(bytes, blockSize);
        std::unique_ptr<std::byte[]> block(new std::byte[size]);
        blocks.push_back(std::move(block));
        next = blocks.back().get();
        room = size;
        ombrel::adviseHugePages(next, size);
        blockSize *= 2;
    }

    std::size_t blockSize = std::size_t{16} * 1024;
    std::vector<std::unique_ptr<std::byte[]>> blocks;
    std::byte* next = nullptr; ///< in the newest block, the only one with room in it
    std::size_t room = 0;      ///< bytes behind `next`
};

/// What the tables of a pass that only grow take their memory with.
template <class T>
struct PassAllocator {
    using value_type = T;
    static_assert(alignof(T) <= PassMemory::alignment);

    PassAllocator(PassMemory& memory) : memory(&memory) {}
    template <class Other>
    PassAllocator(const PassAllocator<Other>& other) : memory(other.memory) {}

    T* allocate(std::size_t count) {
        return static_cast<T*>(memory->allocate(count * sizeof(T))); // NOLINT(bugprone-sizeof-expression)
    }
    void deallocate(T*, std::size_t) {}

    template <class Other>
    bool operator==(const PassAllocator<Other>& other) const {
        return memory == other.memory;
    }

    PassMemory* memory;
};

} // namespace ca::formatting
