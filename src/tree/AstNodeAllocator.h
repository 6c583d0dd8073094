#pragma once

#include <cstddef>
#include <forward_list>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace lf::astapi {

/// A bump allocator: memory is freed only when the arena is destroyed.
///
/// Objects in it aren't known to the arena; those that need their destructor run register a clean-up. The
/// arena's destructor calls all clean-ups in the order of registration and then frees the memory. A clean-up
/// that is empty or throws ends the process. One thread at a time.
class AstNodeAllocator {
public:
    /// `pageSize` is in bytes and a multiple of 8. The first pages have this size; later ones are a quarter
    /// of all before, up to 1 MiB.
    explicit AstNodeAllocator(std::size_t pageSize);
    AstNodeAllocator(const AstNodeAllocator&) = delete;
    AstNodeAllocator& operator=(const AstNodeAllocator&) = delete;
    ~AstNodeAllocator();

    /// Memory of `size` bytes, aligned to 8, that lives as long as the arena. More than half of the first
    /// page gets a block by itself. Throws std::bad_alloc.
    void* allocate(std::size_t size) {
        if (size > pageSize / 2) {
            return allocateLarge(size);
        }
        const std::size_t rounded = roundUp(size);
        if (rounded > newestSize - usedOffset) {
            addPage();
        }
        ++counters.smallRequests;
        counters.smallBytes += size;
        return pages.front().get() + std::exchange(usedOffset, usedOffset + rounded);
    }

    void addCleanUp(std::function<void()> cleanUp);

    /// What the arena handed out and what it took for that. All sizes in bytes.
    struct Counters {
        std::size_t smallRequests = 0;
        std::size_t smallBytes = 0;
        std::size_t largeRequests = 0;
        std::size_t largeBytes = 0;
        std::size_t pages = 0;
        std::size_t pageBytes = 0;
        std::size_t wastedBytes = 0; ///< ends of pages in which the next request had no room
    };

    const Counters& getCounters() const { return counters; }

private:
    using Memory = std::unique_ptr<std::byte[]>;

    struct LargeBlock {
        Memory memory;
        std::size_t size;
    };

    static constexpr std::size_t roundUp(std::size_t size) { return (size + 7) / 8 * 8; }
    std::size_t getNextSize() const;
    void addPage();
    void* allocateLarge(std::size_t size);

    std::size_t pageSize;
    std::size_t newestSize = 0;            ///< of the newest page, in bytes
    std::size_t usedOffset = 0;            ///< in the newest page
    std::forward_list<Memory> pages;       ///< newest first
    std::vector<std::byte*> pageAddresses; ///< oldest first
    std::forward_list<LargeBlock> largeBlocks;
    Counters counters;
    std::vector<std::function<void()>> cleanUps;
};

} // namespace lf::astapi
