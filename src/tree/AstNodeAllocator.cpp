#include "tree/AstNodeAllocator.h"

#include <algorithm>
#include <utility>

namespace lf::astapi {

AstNodeAllocator::AstNodeAllocator(std::size_t pageSize) : pageSize(pageSize) {}

AstNodeAllocator::~AstNodeAllocator() {
    for (const auto& cleanUp : cleanUps) {
        cleanUp();
    }
}

void AstNodeAllocator::addCleanUp(std::function<void()> cleanUp) {
    cleanUps.push_back(std::move(cleanUp));
}

/// All that can throw comes before the arena changes.
void AstNodeAllocator::addPage() {
    const std::size_t size = getNextSize();
    std::forward_list<Memory> page;
    page.push_front(Memory(new std::byte[size]));
    pageAddresses.push_back(page.front().get());
    if (!pages.empty()) {
        counters.wastedBytes += newestSize - usedOffset;
    }
    ++counters.pages;
    counters.pageBytes += size;
    pages.splice_after(pages.before_begin(), page);
    newestSize = size;
    usedOffset = 0;
}

/// A small arena wastes little, and a large one has few pages.
std::size_t AstNodeAllocator::getNextSize() const {
    constexpr std::size_t maximalSize = std::size_t{1} << 20;
    const std::size_t wanted = std::min(counters.pageBytes / 4, maximalSize);
    return std::max(roundUp(wanted), pageSize);
}

void* AstNodeAllocator::allocateLarge(std::size_t size) {
    ++counters.largeRequests;
    counters.largeBytes += size;
    largeBlocks.push_front({Memory(new std::byte[size]), size});
    return largeBlocks.front().memory.get();
}

} // namespace lf::astapi
