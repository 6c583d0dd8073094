#pragma once

#include "tree/TextNode.h"

#include <memory_resource>
#include <vector>

namespace ca::formatting {

class LeafNode;

/// A group of text nodes: one construct of the source. This is where line breaks are chosen, for the gaps
/// directly in the container; a container inside decides for itself when its turn comes.
///
/// It decides when the text in front of it is settled, so it knows the column it starts in, and before any
/// of its own leaves runs, so that they find the decision.
class ContainerNode : public TextNode {
public:
    using Children = std::pmr::vector<TextNode*>;

    /// Becomes the parent of each child. `children` must not be empty. Moved in, it keeps its memory, which
    /// must outlive the node.
    ContainerNode(FormattingConfig::ContainerKind kind, Children children);

    std::unordered_set<FormatNode*> getDependencies() const override;
    void format(FormatPass& pass) override;
    std::u16string getName() const override;
    DebugTable getDebugTable() const override;
    std::optional<std::uint64_t> getInlineWidth(std::shared_ptr<FormattingConfig> config) const override;

    const ContainerNode* asContainer() const override { return this; }

    /// In text order.
    const Children& getChildren() const { return children; }

    /// The leftmost leaf under this node.
    LeafNode* getFirstLeaf() const;

    /// The leaf in front of the container; empty if it begins the text.
    std::optional<LeafNode*> getLeafBefore() const;

private:
    void decideLineBreaks(FormatPass& pass) const;
    void fillLines(FormatPass& pass) const;
    bool fitsOnLine(FormatPass& pass) const;

    FormattingConfig::ContainerKind kind;
    Children children;
};

} // namespace ca::formatting
