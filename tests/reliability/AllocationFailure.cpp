#include "AllocationFailure.h"

#include <atomic>
#include <cerrno>
#include <cstddef>

namespace {

std::atomic<std::uint64_t> failing{0}; // number of the allocation that fails; 0: none
std::atomic<std::uint64_t> made{0};
std::atomic<bool> failsRest{false};
std::atomic<bool> hasFailed{false};
std::atomic<std::int64_t> liveCount{0};

bool mayAllocate() {
    const std::uint64_t wanted = failing;
    if (wanted == 0) {
        return true;
    }
    const std::uint64_t number = ++made;
    if (number < wanted || (number > wanted && !failsRest)) {
        return true;
    }
    hasFailed = true;
    errno = ENOMEM;
    return false;
}

void* count(void* memory) {
    liveCount += memory == nullptr ? 0 : 1;
    return memory;
}

} // namespace

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t number, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void __libc_free(void* memory);

__attribute__((visibility("default"))) void* malloc(std::size_t size) noexcept {
    return mayAllocate() ? count(__libc_malloc(size)) : nullptr;
}

__attribute__((visibility("default"))) void* calloc(std::size_t number, std::size_t size) noexcept {
    return mayAllocate() ? count(__libc_calloc(number, size)) : nullptr;
}

__attribute__((visibility("default"))) void* realloc(void* memory, std::size_t size) noexcept {
    if (memory == nullptr) {
        return malloc(size);
    }
    return mayAllocate() ? __libc_realloc(memory, size) : nullptr;
}

__attribute__((visibility("default"))) void free(void* memory) noexcept {
    liveCount -= memory == nullptr ? 0 : 1;
    __libc_free(memory);
}
}

void failAllocation(std::uint64_t number, bool rest) {
    hasFailed = false;
    made = 0;
    failsRest = rest;
    failing = number;
}

bool stopFailing() {
    failing = 0;
    return hasFailed;
}

std::int64_t countLiveAllocations() {
    return liveCount;
}
