#pragma once

#include <ca/lexer/Token.h>
#include <lf/astapi/Nodes.h>

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

/// Where the nodes of one file start.
struct ParsedNodes {
    TextNode* rootText = nullptr; ///< a container of kind `None`
    IndentNode* rootIndent = nullptr;
    LeafNode* firstLeaf = nullptr; ///< start of the chain of leaves
};

/// Makes the nodes of a file from its syntax tree and its tokens in an empty home; the outermost level is the
/// first. The nodes keep pointers to the tokens and none into the syntax tree. Tree and tokens have to be of
/// the same text: nothing checks that. Throws std::logic_error for a syntax tree with a node that no rule
/// knows.
ParsedNodes parseNodes(const lf::astapi::ProgramFile<ca::astapi::CA>& program,
                       const std::vector<ca::lexer::Token>& tokens, CommentLines commentLines,
                       NodeHome& home);

} // namespace ca::formatting
