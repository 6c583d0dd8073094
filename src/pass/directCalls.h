#pragma once

#include "config/OptionCache.h"
#include "tree/AlignedCommentNode.h"
#include "tree/ContainerNode.h"
#include "tree/IndentNode.h"
#include "tree/TokenNode.h"
#include "tree/WhitespaceNodes.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

// What the pass asks of nodes, without sets, copies of strings and shared pointers for the library's own
// classes. Any other class is asked through its virtual operations.

namespace ca::formatting {

/// Calls `visit` with each node that has to run before this one. A node may come twice.
template <class Visit>
void visitDependencies(const FormatNode& node, Visit visit) {
    const auto visitIfAny = [&](const auto& dependency) {
        if (dependency) {
            visit(*dependency);
        }
    };
    switch (node.getExactClass()) {
    case ExactClass::Other:
        for (FormatNode* dependency : node.getDependencies()) {
            visit(dependency);
        }
        return;
    case ExactClass::Indent:
        visitIfAny(static_cast<const IndentNode&>(node).getParent());
        return;
    case ExactClass::Container: {
        const auto& container = static_cast<const ContainerNode&>(node);
        visitIfAny(container.getParent());
        visitIfAny(container.getLeafBefore());
        const IndentNode* last = nullptr;
        for (const TextNode* child : container.viewChildren()) {
            const WhitespaceNode* gap = child->asWhitespace();
            if (gap != nullptr && gap->getIndent() != last) {
                last = gap->getIndent();
                visit(gap->getIndent());
            }
        }
        return;
    }
    default: {
        const auto& leaf = static_cast<const LeafNode&>(node);
        visitIfAny(leaf.getPrevious());
        visitIfAny(leaf.getParent());
    }
    }
}

/// The node as a leaf that waits for nothing but the last leaf before it in the tree's list and its
/// container; null if it isn't one.
inline const LeafNode* asLeafInListOrder(const FormatNode& node) {
    switch (node.getExactClass()) {
    case ExactClass::Other:
    case ExactClass::Indent:
    case ExactClass::Container:
        return nullptr;
    default: {
        const auto& leaf = static_cast<const LeafNode&>(node);
        return leaf.isInListOrder() ? &leaf : nullptr;
    }
    }
}

/// WhitespaceNode::isLineBreakCandidate.
inline bool isCandidate(const WhitespaceNode& gap, const std::shared_ptr<FormattingConfig>& config,
                        OptionCache& options) {
    switch (gap.getExactClass()) {
    case ExactClass::BinaryOperationWhitespace:
        return static_cast<const BinaryOperationWhitespaceNode&>(gap).isCandidate(options);
    case ExactClass::LineSeparatorWhitespace:
        return true;
    case ExactClass::Comment:
    case ExactClass::AlignedComment:
    case ExactClass::NecessaryWhitespace:
    case ExactClass::UnnecessaryWhitespace:
        return false;
    default:
        return gap.isLineBreakCandidate(config);
    }
}

/// TextNode::getInlineWidth of a node that isn't a container.
inline std::optional<std::uint64_t>
measureLeaf(const TextNode& node, const std::shared_ptr<FormattingConfig>& config, OptionCache& options) {
    switch (node.getExactClass()) {
    case ExactClass::Token:
        return static_cast<const TokenNode&>(node).getWidth();
    case ExactClass::BinaryOperationWhitespace:
        return static_cast<const BinaryOperationWhitespaceNode&>(node).getWidth();
    case ExactClass::Comment:
    case ExactClass::AlignedComment:
        return std::nullopt;
    case ExactClass::LineSeparatorWhitespace:
        return static_cast<const LineSeparatorWhitespaceNode&>(node).getWidth();
    case ExactClass::NecessaryWhitespace:
        return static_cast<const NecessaryWhitespaceNode&>(node).getWidth(options);
    case ExactClass::UnnecessaryWhitespace:
        return static_cast<const UnnecessaryWhitespaceNode&>(node).getWidth(options);
    default:
        return node.getInlineWidth(config);
    }
}

/// LeafNode::getText.
inline void appendText(const LeafNode& leaf, FormatPass& pass, std::u16string& text) {
    switch (leaf.getExactClass()) {
    case ExactClass::Token:
        text += static_cast<const TokenNode&>(leaf).getToken().lexeme;
        return;
    case ExactClass::BinaryOperationWhitespace:
        static_cast<const BinaryOperationWhitespaceNode&>(leaf).appendText(pass, text);
        return;
    case ExactClass::Comment:
        static_cast<const CommentNode&>(leaf).appendItems(pass, text);
        return;
    case ExactClass::AlignedComment:
        static_cast<const AlignedCommentNode&>(leaf).appendText(pass, text);
        return;
    case ExactClass::LineSeparatorWhitespace:
        static_cast<const LineSeparatorWhitespaceNode&>(leaf).appendText(pass, text);
        return;
    case ExactClass::NecessaryWhitespace:
        static_cast<const NecessaryWhitespaceNode&>(leaf).appendText(pass, text);
        return;
    case ExactClass::UnnecessaryWhitespace:
        static_cast<const UnnecessaryWhitespaceNode&>(leaf).appendText(pass, text);
        return;
    default:
        text += leaf.getText(pass);
    }
}

} // namespace ca::formatting
