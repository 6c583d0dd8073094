#pragma once

#include "pass/PassMemory.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <unordered_map>
#include <unordered_set>

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
template <class Value, class Node = const FormatNode*>
using NodeTable =
    std::unordered_map<Node, Value, NodeHash, std::equal_to<>, PassAllocator<std::pair<const Node, Value>>>;

/// For each node that can't run yet, what it still waits for. The nodes of a set lie right behind its entry.
using PendingNodes = std::unordered_set<FormatNode*, NodeHash, std::equal_to<>, PassAllocator<FormatNode*>>;
using PendingTable = NodeTable<PendingNodes, FormatNode*>;

} // namespace ca::formatting
