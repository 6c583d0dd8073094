#include "tree/AstNodeAllocator.h"

#include <new>
#include <utility>

namespace lf::astapi {

namespace {

constexpr std::size_t alignment = 8;

constexpr std::size_t roundUp(std::size_t size) {
    return (size + alignment - 1) / alignment * alignment;
}

} // namespace

AstNodeAllocator::AstNodeAllocator(std::size_t pageSize) : pageSize(pageSize) {}

AstNodeAllocator::~AstNodeAllocator() {
    for (const auto& cleanUp : cleanUps) {
        cleanUp();
    }
}

void* AstNodeAllocator::allocate(std::size_t size) {
    if (size > pageSize / 2) {
        return allocateLarge(size);
    }
    ++counters.smallRequests;
    counters.smallBytes += size;
    const std::size_t rounded = roundUp(size);
    if (pages.empty() || usedOffset + rounded > pageSize) {
        addPage();
    }
    return pages.front().get() + std::exchange(usedOffset, usedOffset + rounded);
}

void AstNodeAllocator::addCleanUp(std::function<void()> cleanUp) {
    cleanUps.push_back(std::move(cleanUp));
}

/// Nothing that a node holds is aligned more strictly than the arena aligns.
void* AstNodeAllocator::do_allocate(std::size_t size, std::size_t requiredAlignment) {
    if (requiredAlignment > alignment) {
        throw std::bad_alloc();
    }
    return allocate(size);
}

/// All that can throw comes before the arena changes.
void AstNodeAllocator::addPage() {
    std::forward_list<Memory> page;
    page.push_front(Memory(new std::byte[pageSize]));
    pageAddresses.push_back(page.front().get());
    if (!pages.empty()) {
        counters.wastedBytes += pageSize - usedOffset;
    }
    ++counters.pages;
    counters.pageBytes += pageSize;
    pages.splice_after(pages.before_begin(), page);
    usedOffset = 0;
}

void* AstNodeAllocator::allocateLarge(std::size_t size) {
    ++counters.largeRequests;
    counters.largeBytes += size;
    largeBlocks.push_front({Memory(new std::byte[size]), size});
    return largeBlocks.front().memory.get();
}

} // namespace lf::astapi
