#pragma once

#include "config/FormattingConfig.h"
#include "tree/FormatNode.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace ca::formatting {

class ContainerNode;
class WhitespaceNode;

/// Something that takes up space in the output: a group of text nodes or a leaf.
class TextNode : public FormatNode {
public:
    /// Width of the node if it is on one line, in 16-bit characters; empty if that can't be told. Needs
    /// the options only, so a node can be measured before it has run.
    virtual std::optional<std::uint64_t> getInlineWidth(std::shared_ptr<FormattingConfig> config) const = 0;

    /// The node as a container or as a gap, null if it is none. Whoever walks over children asks this of each
    /// of them, and for that a dynamic_cast takes too long.
    const ContainerNode* asContainer() const;
    const WhitespaceNode* asWhitespace() const;

    /// The container around this node; empty for the outermost.
    std::optional<ContainerNode*> getParent() const {
        return parent != nullptr ? std::optional(parent) : std::nullopt;
    }
    void setParent(ContainerNode* container) { parent = container; }

protected:
    TextNode() = default;
    explicit TextNode(Family family) : FormatNode(family) {}

private:
    ContainerNode* parent = nullptr;
};

} // namespace ca::formatting
