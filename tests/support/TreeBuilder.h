#pragma once

#include "config/FormattingConfig.h"
#include "tree/ContainerNode.h"
#include "tree/FormatTree.h"
#include "tree/IndentNode.h"
#include "tree/WhitespaceNodes.h"
#include "tree/makeNode.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Builds a format tree by hand, over the tokens of a text and without looking at their grammar:
///
///     TreeBuilder builder(u"a + b");
///     auto tree = builder.finish(builder.container(ContainerKind::PlusMinus, "TBTAT"));
///
/// Each step takes what comes next from the text, and appends one leaf of the level that is open:
///
///     T  one token
///     U  N  L  a gap of whitespace and comments: unnecessary, necessary, line separator (with ; and , too)
///     B  A  the gap before and after an operator of the container's kind
///
/// A gap with a comment becomes a CommentNode. One builder makes one tree.
class TreeBuilder {
public:
    using ContainerKind = ca::formatting::FormattingConfig::ContainerKind;
    using TextNodes = std::vector<ca::formatting::TextNode*>;

    explicit TreeBuilder(const std::u16string& text);
    explicit TreeBuilder(std::vector<ca::lexer::Token> tokens);

    TextNodes take(std::string_view steps, ContainerKind kind = ContainerKind::None);

    ca::formatting::ContainerNode* container(ContainerKind kind, const TextNodes& children);
    ca::formatting::ContainerNode* container(ContainerKind kind, std::string_view steps);

    /// Opens a level that adds one to the indentation, inside the one that is open.
    void enterLevel();
    void leaveLevel();

    ca::formatting::IndentNode* getLevel() const { return level; }
    const std::vector<ca::lexer::Token>& getTokens() const;

    /// Makes any other node.
    template <class NodeClass, class... Arguments>
    NodeClass* make(Arguments&&... arguments) {
        return ca::formatting::makeNode<NodeClass>(tree->home, std::forward<Arguments>(arguments)...);
    }

    /// Links the leaves and hands over the tree.
    std::shared_ptr<ca::formatting::FormatTree> finish(ca::formatting::TextNode* rootText);

private:
    struct Tree : ca::formatting::FormatTree {
        Tree() : FormatTree(4096) {}
        using FormatTree::firstLeaf;
        using FormatTree::home;
        using FormatTree::rootIndent;
        using FormatTree::rootText;
        using FormatTree::tokens;
    };

    struct Run {
        std::vector<const ca::lexer::Token*> tokens;
        std::u16string name;
    };

    void linkLeaves();
    ca::formatting::TextNode* takeStep(char step, ContainerKind kind);
    Run takeRun(bool absorbSeparators);

    std::shared_ptr<Tree> tree;
    ca::formatting::IndentNode* level;
    std::size_t tokenIndex = 0;
};

/// The tree's text under the given options.
std::u16string formatTree(const std::shared_ptr<ca::formatting::FormatTree>& tree,
                          const std::shared_ptr<ca::formatting::FormattingConfig>& config);
