#pragma once

// The JSON library, for all that use it. Its stack starts without memory and compares null plus a size with
// null, which is harmless but what clang's sanitizer for pointers stops at.
#if defined(__clang__)
#pragma clang attribute push(__attribute__((no_sanitize("pointer-overflow"))), apply_to = function)
#endif

#include <rapidjson/encodings.h>
#include <rapidjson/error/error.h>
#include <rapidjson/reader.h>

#if defined(__clang__)
#pragma clang attribute pop
#endif

#include <cstddef>
#include <cstdlib>
#include <new>

namespace ca::utils {

/// Memory for the library's stack, which doesn't look whether it got any.
class JsonAllocator {
public:
    static constexpr bool kNeedFree = true;

    void* Malloc(std::size_t size) { return size == 0 ? nullptr : check(std::malloc(size)); }

    void* Realloc(void* memory, std::size_t, std::size_t size) {
        if (size == 0) {
            std::free(memory);
            return nullptr;
        }
        return check(std::realloc(memory, size));
    }

    static void Free(void* memory) { std::free(memory); }

private:
    static void* check(void* memory) {
        if (memory == nullptr) {
            throw std::bad_alloc();
        }
        return memory;
    }
};

} // namespace ca::utils
