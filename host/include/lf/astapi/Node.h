#pragma once

#include "lf/astapi/NodeKind.h"
#include "ombrel/api.h"

#include <cstddef>
#include <cstdint>

namespace lf::astapi {

/// What a language adds to each of its nodes; specialised for each language.
template <class NodeClass>
class NodeCustomization;

/// A node of a syntax tree: a plain record that the analysis result owns, valid as long as that result is
/// held.
///
/// The classes of Nodes.h derive from it and add their children. A node without fields of its own is of this
/// very class.
template <class Language>
struct Node : NodeCustomization<Node<Language>> {
    const Node* parent;     ///< the node around this one, null for the root
    std::uint32_t position; ///< offset of the node's first character in the text, in 16-bit characters
    NodeKind kind;
    std::uint32_t line;   ///< of the first character, from 1
    std::uint32_t column; ///< of the first character: 16-bit characters, from 1
};

/// The children in one place of a node, in the order of the text. Never holds a null.
template <class Language>
struct NodeList {
    const Node<Language>* const* first = nullptr;
    const Node<Language>* const* last = nullptr; ///< after the last element

    const Node<Language>* const* begin() const { return first; }
    const Node<Language>* const* end() const { return last; }
    bool empty() const { return first == last; }
    std::size_t size() const { return static_cast<std::size_t>(last - first); }
    const Node<Language>* front() const { return *first; }
    const Node<Language>* operator[](std::size_t i) const { return first[i]; }
};

} // namespace lf::astapi
