#pragma once

#include "tree/AstNodeAllocator.h"
#include "tree/FormatNode.h"
#include "tree/IndentNode.h"
#include "tree/NodeHome.h"

#include <cstdint>
#include <new>
#include <type_traits>
#include <utility>

namespace ca::formatting {

/// Makes a node in the arena of a tree and adds it to the tree's list of nodes. The node is destroyed with
/// the arena, unless it is of one of the library's classes and keeps all that it has in the arena: then there
/// is nothing to free. If its constructor throws, arena and list are left without it.
template <class NodeClass, class... Arguments>
NodeClass* makeNode(NodeHome& home, Arguments&&... arguments) {
    static_assert(alignof(NodeClass) <= 8, "the arena aligns to 8 bytes");
    constexpr ExactClass exactClass = exactClassOf<NodeClass>;
    void* memory = home.arena.allocate(sizeof(NodeClass));
    auto* node = new (memory) NodeClass(std::forward<Arguments>(arguments)...);
    if constexpr (std::is_base_of_v<IndentNode, NodeClass>) {
        node->setHome(home);
    }
    if (exactClass == ExactClass::Other || node->hasOwnMemory()) {
        try {
            home.arena.addCleanUp([node = static_cast<FormatNode*>(node)] { node->~FormatNode(); });
        } catch (...) {
            node->~NodeClass();
            throw;
        }
    }
    node->enlist(static_cast<std::uint32_t>(home.nodes.size()), exactClass);
    home.nodes.push_back(node);
    return node;
}

} // namespace ca::formatting
