#pragma once

#include "syntax/Parser.h"

#include <algorithm>

namespace ca::syntax {

template <class NodeClass>
NodeClass* Parser::make(const CodeToken& first) {
    auto* node = arena.make<NodeClass>();
    node->kind = NodeClass::nodeKind;
    node->position = first.position;
    node->line = first.line;
    node->column = first.column;
    return node;
}

template <class NodeClass>
NodeClass* Parser::make(const Node* first) {
    auto* node = arena.make<NodeClass>();
    node->kind = NodeClass::nodeKind;
    node->position = first->position;
    node->line = first->line;
    node->column = first->column;
    return node;
}

/// Nodes are handed around as constant, but none is when it gets its parent: the arena made it for this
/// parser.
inline const Node* Parser::own(const Node* parent, const Node* child) {
    const_cast<Node*>(child)->parent = parent;
    return child;
}

inline NodeList Parser::takePending(std::size_t mark, const Node* parent) {
    const std::size_t count = pending.size() - mark;
    if (count == 0) {
        return {};
    }
    auto* list = arena.makeArray<const Node*>(count);
    std::copy(pending.begin() + static_cast<std::ptrdiff_t>(mark), pending.end(), list);
    pending.resize(mark);
    for (std::size_t i = 0; i < count; ++i) {
        own(parent, list[i]);
    }
    return {list, list + count};
}

} // namespace ca::syntax
