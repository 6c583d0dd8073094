#pragma once

#include "tree/AlignedCommentNode.h"
#include "tree/ContainerNode.h"
#include "tree/IndentNodes.h"
#include "tree/TokenNode.h"
#include "tree/WhitespaceNodes.h"
#include "tree/makeNode.h"

#include <ca/lexer/Token.h>

#include <cstddef>
#include <initializer_list>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

namespace ca::formatting {

enum class CommentLines : std::uint8_t;

/// Claims the tokens of a file, or of a part of it, from left to right and makes the leaves of them, each in
/// the level of indentation that is entered at the time. Which token becomes what is for a derived class to
/// know.
class NodeBuilder {
public:
    using TokenTypes = std::initializer_list<ca::lexer::TokenType>;

    /// Home and tokens have to outlive the builder, and the home to be empty. The outermost level is made at
    /// once.
    NodeBuilder(NodeHome& home, const std::vector<ca::lexer::Token>& tokens, CommentLines commentLines);
    NodeBuilder(const NodeBuilder&) = delete;
    NodeBuilder& operator=(const NodeBuilder&) = delete;

    IndentNode* getProgramIndentNode() const { return programIndentNode; }

    /// Null before there is one.
    LeafNode* getFirstLeaf() const { return firstLeaf; }
    LeafNode* getLastLeaf() const { return lastLeaf; }

    /// How many tokens have been claimed.
    std::size_t getTokenCount() const { return tokenIndex; }

protected:
    /// There must be one left.
    TokenNode* takeToken();

    /// Makes one node, of the class given or of one for comments, of all that comes next and is no code or
    /// one of the types to absorb, also of nothing.
    template <class NodeClass, class... Arguments>
    WhitespaceNode* takeRun(TokenTypes absorb, Arguments... arguments) {
        const Run taken = claimRun(absorb);
        if (taken.hasComment) {
            return takeComments(taken.classified);
        }
        return make<NodeClass>(arguments..., currentIndentNode, taken.classified);
    }

    /// Type of the next token of code. There must be one left: `EndOfInput` is one.
    ca::lexer::TokenType peekType() const;

    ContainerNode* makeContainer(FormattingConfig::ContainerKind kind, std::span<TextNode* const> children) {
        return make<ContainerNode>(kind, ArenaChildren{home.arena, children});
    }

    /// Enters a new level inside the present one.
    template <class Level, class... Arguments>
    void enterIndent(Arguments&&... arguments) {
        currentIndentNode = make<Level>(currentIndentNode, std::forward<Arguments>(arguments)...);
        currentIndentNode->open();
    }

    void leaveIndent();

    /// Back to the outermost level.
    void enterProgram() { currentIndentNode = programIndentNode; }

private:
    struct Run {
        ClassifiedRun classified; ///< valid until the next run is claimed
        bool hasComment;
    };

    Run claimRun(TokenTypes absorb);
    WhitespaceNode* takeComments(const ClassifiedRun& classified);

    template <class NodeClass, class... Arguments>
    NodeClass* make(Arguments&&... arguments) {
        auto* node = makeNode<NodeClass>(home, std::forward<Arguments>(arguments)...);
        if constexpr (std::is_base_of_v<LeafNode, NodeClass>) {
            firstLeaf = firstLeaf != nullptr ? firstLeaf : node;
            lastLeaf = node;
        }
        return node;
    }

    NodeHome& home;
    const std::vector<ca::lexer::Token>& tokens;
    CommentLines commentLines;
    std::size_t tokenIndex = 0; ///< of the next token that nobody has claimed
    IndentNode* programIndentNode = nullptr;
    IndentNode* currentIndentNode = nullptr; ///< level of the leaves that are made now
    LeafNode* firstLeaf = nullptr;
    LeafNode* lastLeaf = nullptr;
    std::vector<const ca::lexer::Token*> run; ///< the run that is being claimed; kept for its memory
    std::vector<WhitespaceItem> items;        ///< of the run; likewise
};

} // namespace ca::formatting
