#pragma once

#include "lsp/AnalysisCache.h"

#include <cstddef>
#include <vector>

namespace ombrel::lsp {

/// The tokens of a program with their places in the document.
class TokenList {
public:
    /// The analysis has to outlive it.
    explicit TokenList(const Analysis& analysis);

    std::size_t size() const { return tokens.size(); }
    const ca::lexer::Token& operator[](std::size_t i) const { return tokens[i]; }

    /// Offset of a token in the document.
    std::size_t getOffset(std::size_t i) const { return offsets[i]; }
    std::size_t getEnd(std::size_t i) const { return offsets[i] + tokens[i].lexeme.size(); }

    /// The line, from 0, that a token starts in.
    std::size_t getLine(std::size_t i) const { return tokens[i].line - 1; }

    /// The token that starts at a place of the program, as nodes of the tree have it.
    std::size_t find(std::size_t programOffset) const;

    /// The next token of code, a line end, or the end of the input from `i` on.
    std::size_t skipWhitespace(std::size_t i) const;

private:
    const std::vector<ca::lexer::Token>& tokens;
    std::vector<std::size_t> offsets;
    std::size_t markLength;
};

/// A block of statements or members, by the numbers of its tokens.
struct Block {
    std::size_t opener;                ///< `if`, `function`, …
    std::vector<std::size_t> branches; ///< `else`, `case`, …
    std::size_t end;                   ///< its `end`; for a function without one the token after it
    bool hasEnd;                       ///< false for a function without `end`, too
};

/// The blocks of a text in the order of their openers. Needs no syntax tree, so it knows the blocks of a text
/// that doesn't parse too; those that nothing closes are left out.
std::vector<Block> findBlocks(const TokenList& tokens);

} // namespace ombrel::lsp
