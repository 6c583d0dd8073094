#pragma once

#include "pass/PassMemory.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <unordered_map>

namespace ca::formatting {

class FormatNode;

/// Spreads nodes over a table in the order in which they lie in memory, which is more or less the order in
/// which a pass comes to them, so that it finds neighbours in one cache line. A node takes about 64 bytes.
struct NodeHash {
    std::size_t operator()(const FormatNode* node) const noexcept {
        return reinterpret_cast<std::uintptr_t>(node) >> 6;
    }
};

/// A table by node.
template <class Value>
using NodeTable = std::unordered_map<const FormatNode*, Value, NodeHash, std::equal_to<>,
                                     PassAllocator<std::pair<const FormatNode* const, Value>>>;

} // namespace ca::formatting
