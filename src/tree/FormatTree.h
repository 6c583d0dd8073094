#pragma once

#include "tree/AstNodeAllocator.h"
#include "tree/NodeHome.h"

#include <ca/lexer/Token.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ca {
class AnalysisResult;
}

namespace ca::formatting {

enum class CommentLines : std::uint8_t;
struct FilePart;
struct ParsedSource;
class FormatNode;
class IndentNode;
class LeafNode;
class TextNode;

/// One file as a graph of small nodes that state what could change in its text. Two trees share the same
/// leaves: the text tree groups tokens and the gaps between them by construct, the indentation tree says
/// which level each leaf belongs to.
///
/// Each node of a finished tree is listed once and is in one of the two trees, the chain of leaves follows
/// the order of the text, and each token is in exactly one leaf. tests/support/TreeInvariantChecker.h has
/// the rules one by one and checks them.
///
/// A tree owns its tokens, with others perhaps, and, through its arena, all its nodes, and nothing changes it
/// once it is finished.
/// It is shared by `std::shared_ptr`, is neither copied nor moved, and serves one thread at a time.
class FormatTree {
public:
    /// Parses and tokenizes the text of a file and builds its tree. Throws ca::SyntaxErrorException if the
    /// text doesn't parse.
    explicit FormatTree(const std::u16string& sourceText);

    /// Builds the tree of a text that parses, whose tokens have to be there. Shares these and needs the rest
    /// of it no longer.
    FormatTree(const ParsedSource& source, CommentLines commentLines);

    /// The same for a part of such a text. What is under the outermost level, and under the outermost
    /// container, is what the tree of the whole text has there.
    FormatTree(const ca::AnalysisResult& analysis, const FilePart& part,
               std::shared_ptr<const std::vector<ca::lexer::Token>> tokensOfPart, CommentLines commentLines);

    FormatTree(const FormatTree&) = delete;
    FormatTree& operator=(const FormatTree&) = delete;

    /// All nodes of both trees in order of creation.
    const std::vector<FormatNode*>& getNodes() const { return nodes; }

    TextNode* getRootText() const { return rootText; }

    /// Start of the chain of leaves; empty for a tree without leaves.
    std::optional<LeafNode*> getFirstLeaf() const { return firstLeaf; }

    /// End of the chain of leaves when the tree was built; null for a tree without leaves.
    LeafNode* getLastLeaf() const { return lastLeaf; }

    /// How many of its tokens are in a leaf, from the first one on: all, unless it is the tree of a part.
    std::size_t getTokenCount() const { return tokenCount; }

    /// The leaves as a table, one a row.
    std::u16string dumpLeaves() const;

    /// The leaves with their containers drawn as brackets to the right.
    std::u16string dumpTextTree() const;

    /// The leaves with their levels drawn as brackets to the right.
    std::u16string dumpIndentTree() const;

protected:
    /// An empty tree with an arena of the given page size in bytes, for those that fill the record.
    explicit FormatTree(std::size_t pageSize) : allocator(pageSize) {}

private:
    void build(const ca::AnalysisResult& analysis, const FilePart& part, CommentLines commentLines);

protected:
    // Destroyed in reverse order: the nodes first, then the tokens that they point at.
    std::vector<FormatNode*> nodes;
    TextNode* rootText = nullptr;     ///< a container of kind `None`
    IndentNode* rootIndent = nullptr; ///< a ProgramIndentNode
    std::optional<LeafNode*> firstLeaf;
    LeafNode* lastLeaf = nullptr;
    std::size_t tokenCount = 0;
    std::shared_ptr<const std::vector<ca::lexer::Token>> tokens;
    lf::astapi::AstNodeAllocator allocator;
    NodeHome home{allocator, nodes};
};

} // namespace ca::formatting
