#pragma once

#include "tree/IndentNode.h"
#include "tree/NodeHome.h"
#include "tree/TextNode.h"

#include <cstddef>
#include <string>

namespace ca::formatting {

/// A piece of the output with text of its own: a token, or what is between two tokens. All leaves of a
/// tree are a chain in the order of the text.
///
/// A leaf runs when the leaf before it and the container around it have, and then stores its end column.
class LeafNode : public TextNode {
public:
    ~LeafNode() override;

    std::unordered_set<FormatNode*> getDependencies() const override;

    /// The final text. To be asked when all nodes have run.
    virtual std::u16string getText(FormatPass& pass) const = 0;

    std::optional<LeafNode*> getPrevious() const { return makeOptional(findPrevious()); }
    void setPrevious(LeafNode* leaf) { makeLinks().previous = leaf; }
    std::optional<LeafNode*> getNext() const { return makeOptional(findNext()); }
    void setNext(LeafNode* leaf) { makeLinks().next = leaf; }

    /// Whether the leaf before this one is the last one before it in the tree's list of nodes. False for one
    /// that is linked by hand.
    bool isInListOrder() const { return !storage.hasLinks; }

    /// The level that this leaf belongs to. Never null.
    IndentNode* getIndent() const { return storage.hasLinks ? links->indent : indent; }

protected:
    /// `indent` must not be null; the leaf is a member of it from now on. If it is open, the leaf comes after
    /// all leaves that were made before; otherwise nothing is before and after it until it is told.
    explicit LeafNode(IndentNode* indent, Family family = Family::Leaf);

private:
    /// The place of a leaf that isn't where the list of nodes says: one that was made by hand.
    struct Links {
        IndentNode* indent;
        LeafNode* previous = nullptr;
        LeafNode* next = nullptr;
    };

    static std::optional<LeafNode*> makeOptional(LeafNode* leaf) {
        return leaf != nullptr ? std::optional(leaf) : std::nullopt;
    }

    LeafNode* findPrevious() const;
    LeafNode* findNext() const;
    Links& makeLinks();

    union {
        IndentNode* indent;
        Links* links; ///< of this node, if storage.hasLinks
    };
};

// Between two leaves there are few nodes in the list: the containers that end there and the levels that
// begin. Leaves that were made by hand come after all others.

inline LeafNode* LeafNode::findPrevious() const {
    if (storage.hasLinks) {
        return links->previous;
    }
    const std::vector<FormatNode*>& nodes = indent->getHome()->nodes;
    for (std::size_t i = getNumber(); i-- > 0;) {
        if (isLeafInSequence(*nodes[i])) {
            return static_cast<LeafNode*>(nodes[i]);
        }
    }
    return nullptr;
}

inline LeafNode* LeafNode::findNext() const {
    if (storage.hasLinks) {
        return links->next;
    }
    const std::vector<FormatNode*>& nodes = indent->getHome()->nodes;
    for (std::size_t i = std::size_t{getNumber()} + 1; i < nodes.size(); ++i) {
        if (isLeafInSequence(*nodes[i])) {
            return static_cast<LeafNode*>(nodes[i]);
        }
    }
    return nullptr;
}

} // namespace ca::formatting
