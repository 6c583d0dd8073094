#pragma once

#include <ca/lexer/Token.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ombrel {

/// Where the tokens of a text are, and which of them close which. Keeps the tokens by reference.
class TokenPlaces {
public:
    using Tokens = std::vector<ca::lexer::Token>;

    explicit TokenPlaces(const Tokens& tokens);

    std::size_t getBegin(std::size_t token) const { return offsets[token]; }
    std::size_t getEnd(std::size_t token) const { return offsets[token] + tokens[token].lexeme.size(); }

    /// The token that an offset is in.
    std::size_t find(std::size_t offset) const;

    /// The token that closes a bracket or a block's keyword; the token itself if there is none.
    std::size_t getCloser(std::size_t token) const { return closers[token]; }

    /// The next token of code after this one, the end of the text at the latest.
    std::size_t getNextCode(std::size_t token) const;

    const ca::lexer::Token& operator[](std::size_t token) const { return tokens[token]; }

private:
    const Tokens& tokens;
    std::vector<std::size_t> offsets;
    std::vector<std::size_t> closers;
};

} // namespace ombrel
