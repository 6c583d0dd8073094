#pragma once

#include "format/PlaceSearch.h"
#include "format/TokenView.h"

#include <ca/SyntaxError.h>
#include <ca/astapi/CA.h>
#include <lf/astapi/Nodes.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace ombrel {

using SyntaxNode = lf::astapi::Node<ca::astapi::CA>;

/// A comment without its indentation, and a line of a block without its line end.
std::u16string_view getCommentText(const TokenView& token);

/// Whether two tokens are the same code, or comments with the same text. A comment may move after code or to
/// a line of its own; a block comment's lines stay what they are.
bool isSame(const TokenView& a, const TokenView& b);

/// The tokens that formatting has to leave alone, comments among them, so that a comment can't change places
/// with code. The last one is the end of the text. Keeps the text by reference.
class Marks {
public:
    Marks(std::u16string_view text, std::span<const ca::lexer::TokenSpan> tokens);

    std::size_t getCount() const { return marks.size(); }

    /// The token, without the whitespace that a comment's begins with.
    TokenView operator[](std::size_t i) const {
        return {marks[i].type, text.substr(marks[i].offset, marks[i].length)};
    }

    /// Offset of this in the text, 16-bit characters from 0.
    std::size_t getPosition(std::size_t i) const { return marks[i].offset; }

    /// The first mark at a node's first character or after it. Quick if it comes soon after the
    /// mark `hint`.
    std::size_t find(const SyntaxNode& node, std::size_t hint) const {
        return findPlace(marks, node.position, hint);
    }

    /// The first mark at the place of an error or after it.
    std::size_t find(const ca::SyntaxError& error) const;

private:
    struct Mark { // 32 bits as in the syntax tree: there are many
        std::uint32_t offset;
        std::uint32_t length;
        ca::lexer::TokenType type;
    };

    std::u16string_view text;
    std::vector<Mark> marks;
};

} // namespace ombrel
