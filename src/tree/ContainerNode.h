#pragma once

#include "tree/TextNode.h"
#include "tree/WhitespaceNode.h"

#include <span>
#include <vector>

namespace ca::formatting {

enum class WhitespaceDecision : std::uint32_t;

/// The children of a container, and the arena of the node that keeps a copy of the list.
struct ArenaChildren {
    lf::astapi::AstNodeAllocator& arena;
    std::span<TextNode* const> nodes;
};

/// A group of text nodes: one construct of the source. This is where line breaks are chosen, for the gaps
/// directly in the container; a container inside decides for itself when its turn comes.
///
/// It decides when the text before it is settled, so it knows the column it starts in, and before any
/// of its own leaves runs, so that they find the decision.
class ContainerNode : public TextNode {
public:
    /// Becomes the parent of each child. `children` must not be empty. The container keeps a copy of them.
    ContainerNode(FormattingConfig::ContainerKind kind, const std::vector<TextNode*>& children);

    /// The same with a copy in the arena.
    ContainerNode(FormattingConfig::ContainerKind kind, const ArenaChildren& children);

    ~ContainerNode() override;

    std::unordered_set<FormatNode*> getDependencies() const override;
    void format(FormatPass& pass) override;
    std::u16string getName() const override;
    DebugTable getDebugTable() const override;
    std::optional<std::uint64_t> getInlineWidth(std::shared_ptr<FormattingConfig> config) const override;

    /// A copy of the children, in text order.
    std::vector<TextNode*> getChildren() const {
        const auto all = viewChildren();
        return {all.begin(), all.end()};
    }

    /// The children themselves. Valid as long as the container.
    std::span<TextNode* const> viewChildren() const {
        return {childCount == 1 ? &onlyChild : children, childCount};
    }

    FormattingConfig::ContainerKind getKind() const { return kind; }

    /// The leftmost leaf under this node.
    LeafNode* getFirstLeaf() const;

    /// The leaf before the container; empty if it begins the text.
    std::optional<LeafNode*> getLeafBefore() const;

private:
    void adopt(std::span<TextNode* const> nodes, TextNode** copy);
    void decideAllCandidates(FormatPass& pass, WhitespaceDecision decision) const;
    void decideLineBreaks(FormatPass& pass) const;
    void fillLines(FormatPass& pass) const;
    bool fitsOnLine(FormatPass& pass) const;

    FormattingConfig::ContainerKind kind;
    std::uint32_t childCount;
    union {
        TextNode* onlyChild;
        TextNode* const* children; ///< unless there is one: an array, of this node's if hasOwnMemory()
    };
};

template <>
inline constexpr ExactClass exactClassOf<ContainerNode> = ExactClass::Container;

inline const ContainerNode* TextNode::asContainer() const {
    return getFamily(*this) == Family::Container ? static_cast<const ContainerNode*>(this) : nullptr;
}

inline const WhitespaceNode* TextNode::asWhitespace() const {
    return getFamily(*this) == Family::Whitespace ? static_cast<const WhitespaceNode*>(this) : nullptr;
}

} // namespace ca::formatting
