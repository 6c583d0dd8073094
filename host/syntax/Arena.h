#pragma once

#include "lf/astapi/getPageSize.h"

#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

namespace ca::syntax {

/// Memory for the nodes of one tree, given back all at once. Nothing in it is ever destroyed one by one.
class Arena {
public:
    Arena() = default;
    Arena(Arena&&) = default;
    Arena& operator=(Arena&&) = default;

    template <class T>
    T* make() {
        static_assert(std::is_trivially_destructible_v<T>);
        return new (allocate(sizeof(T), alignof(T))) T{};
    }

    template <class T>
    T* makeArray(std::size_t count) {
        static_assert(std::is_trivially_copyable_v<T>);
        return static_cast<T*>(allocate(count * sizeof(T), alignof(T)));
    }

private:
    void* allocate(std::size_t size, std::size_t alignment) {
        const std::size_t start = (used + alignment - 1) & ~(alignment - 1);
        if (start + size > capacity) {
            return allocateInNewPage(size);
        }
        used = start + size;
        return pages.back().get() + start;
    }

    /// A page of operator new is aligned for everything. An array larger than a page gets a page of its size.
    void* allocateInNewPage(std::size_t size) {
        const std::size_t pageSize = lf::astapi::internal::getPageSize();
        capacity = size > pageSize ? size : pageSize;
        pages.push_back(std::unique_ptr<std::byte[]>(new std::byte[capacity]));
        used = size;
        return pages.back().get();
    }

    std::vector<std::unique_ptr<std::byte[]>> pages;
    std::size_t used = 0;
    std::size_t capacity = 0;
};

} // namespace ca::syntax
