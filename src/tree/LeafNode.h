#pragma once

#include "tree/TextNode.h"

#include <string>

namespace ca::formatting {

class IndentNode;

/// A piece of the output with text of its own: a token, or what is between two tokens. All leaves of a
/// tree are a chain in the order of the text.
///
/// A leaf runs when the leaf before it and the container around it have, and then stores its end column.
class LeafNode : public TextNode {
public:
    std::unordered_set<FormatNode*> getDependencies() const override;

    /// The final text. To be asked when all nodes have run.
    virtual std::u16string getText(FormatPass& pass) const = 0;

    std::optional<LeafNode*> getPrevious() const { return makeOptional(previous); }
    void setPrevious(LeafNode* leaf) { previous = leaf; }
    std::optional<LeafNode*> getNext() const { return makeOptional(next); }
    void setNext(LeafNode* leaf) { next = leaf; }

    /// The level that this leaf belongs to. Never null.
    IndentNode* getIndent() const { return indent; }

protected:
    /// `indent` must not be null; it lists the leaf as a member from now on.
    explicit LeafNode(IndentNode* indent, Family family = Family::Leaf);

private:
    friend class IndentNode;

    static std::optional<LeafNode*> makeOptional(LeafNode* leaf) {
        return leaf != nullptr ? std::optional(leaf) : std::nullopt;
    }

    IndentNode* indent;
    LeafNode* previous = nullptr;
    LeafNode* next = nullptr;
    FormatNode* nextMember = nullptr; ///< of the level
};

} // namespace ca::formatting
