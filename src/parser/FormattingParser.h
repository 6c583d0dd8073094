#pragma once

#include <ca/lexer/Token.h>
#include <lf/astapi/Nodes.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ca::astapi {
struct CA;
}

namespace ca::formatting {

enum class CommentLines : std::uint8_t;
class IndentNode;
class LeafNode;
class TextNode;
struct NodeHome;

/// Statements of the outermost level, one after the other, with the gaps before them. The last part of a file
/// has the end of the text too.
struct FilePart {
    std::size_t firstStatement;
    std::size_t endStatement; ///< the one after the last
    bool isLast;
};

/// The nodes of one file or of a part of it.
struct ParsedNodes {
    TextNode* rootText = nullptr; ///< a container of kind `None`
    IndentNode* rootIndent = nullptr;
    LeafNode* firstLeaf = nullptr; ///< start of the chain of leaves
    LeafNode* lastLeaf = nullptr;
    std::size_t tokenCount = 0; ///< tokens that are in a leaf, from the first one on
};

/// Makes the nodes of a part of a file from its syntax tree and its tokens in an empty home; the outermost
/// level is the first. The tokens are those of the part, and a part that isn't the last needs the next token
/// of code too. The nodes keep pointers to the tokens and none into the syntax tree. Tree and tokens have to
/// be of the same text: nothing checks that. Throws std::logic_error for a syntax tree with a node that no
/// rule knows.
ParsedNodes parseNodes(const lf::astapi::ProgramFile<ca::astapi::CA>& program, const FilePart& part,
                       const std::vector<ca::lexer::Token>& tokens, CommentLines commentLines,
                       NodeHome& home);

/// The part that is the whole file.
FilePart getWhole(const lf::astapi::ProgramFile<ca::astapi::CA>& program);

} // namespace ca::formatting
