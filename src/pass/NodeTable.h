#pragma once

#include <cstddef>
#include <cstdint>
#include <memory_resource>
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

/// A table by node. Its entries come one behind the other from a memory resource that lives as long as the
/// pass, since taking and freeing them one by one would cost more than all that the nodes do.
template <class Value>
using NodeTable = std::pmr::unordered_map<const FormatNode*, Value, NodeHash>;

} // namespace ca::formatting
