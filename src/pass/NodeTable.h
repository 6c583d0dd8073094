#pragma once

#include "pass/PassMemory.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <unordered_map>

namespace ca::formatting {

class FormatNode;

/// Spreads nodes over a table in the order in which they lie in memory, which is more or less the order in
/// which a pass comes to them, so that it finds neighbours in one cache line. A node takes some 170 bytes
/// with what it holds, so with 256 bytes to a bucket the nodes of a tree go round a table of as many buckets
/// once only: those that share a bucket are neighbours too, and not strangers that have left the cache.
struct NodeHash {
    std::size_t operator()(const FormatNode* node) const noexcept {
        return reinterpret_cast<std::uintptr_t>(node) >> 8;
    }
};

/// A table by node.
template <class Value>
using NodeTable = std::unordered_map<const FormatNode*, Value, NodeHash, std::equal_to<>,
                                     PassAllocator<std::pair<const FormatNode* const, Value>>>;

} // namespace ca::formatting
