#pragma once

#include "ca/lexer/Token.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace ca::lexer {

/// The token of a bracket; empty for any other character.
constexpr std::optional<TokenType> findBracket(char16_t c) {
    switch (c) {
    case u'(':
        return TokenType::OpenParenthesis;
    case u')':
        return TokenType::CloseParenthesis;
    case u'[':
        return TokenType::OpenSquareBracket;
    case u']':
        return TokenType::CloseSquareBracket;
    case u'{':
        return TokenType::OpenBrace;
    case u'}':
        return TokenType::CloseBrace;
    default:
        return std::nullopt;
    }
}

constexpr bool isOpening(TokenType bracket) {
    return bracket == TokenType::OpenParenthesis || bracket == TokenType::OpenSquareBracket ||
           bracket == TokenType::OpenBrace;
}

constexpr bool isClosing(TokenType bracket) {
    return bracket == TokenType::CloseParenthesis || bracket == TokenType::CloseSquareBracket ||
           bracket == TokenType::CloseBrace;
}

/// The open brackets, innermost last.
class Brackets {
public:
    bool isAnyOpen() const { return !stack.empty(); }

    /// Whether a line end closes nothing: a matrix or a brace is open, at any depth.
    bool isListOpen() const { return count(TokenType::OpenSquareBracket) + count(TokenType::OpenBrace) > 0; }

    std::size_t getDepth() const { return stack.size(); }

    void open(TokenType bracket);

    /// Closes the innermost bracket that `closingBracket` fits and all that was opened inside it; nothing if
    /// there is none. All closings together take time in proportion to the openings.
    void close(TokenType closingBracket);

    /// Opens or closes, if the token is a bracket.
    void pass(TokenType token);

    void clear();

private:
    std::size_t count(TokenType bracket) const { return counts[getSlot(bracket)]; }

    /// Opening brackets have every other number from 37, each one less than its partner.
    static std::uint8_t getSlot(TokenType openBracket) {
        return static_cast<std::uint8_t>(static_cast<int>(openBracket) -
                                         static_cast<int>(TokenType::OpenParenthesis));
    }

    std::vector<std::uint8_t> stack; ///< slots
    std::array<std::size_t, 5> counts{};
};

/// The open blocks, innermost last.
class Blocks {
public:
    bool isAnyOpen() const { return !stack.empty(); }

    std::size_t getDepth() const { return stack.size(); }

    /// Opening keyword of the innermost block, `EndOfInput` outside of all.
    TokenType getInnermost() const { return stack.empty() ? TokenType::EndOfInput : stack.back().keyword; }

    /// Whether this is a place for statements: in scripts, functions and the blocks inside them. A class and
    /// its blocks have members.
    bool holdsStatements() const;

    /// Whether the innermost block is a function that has had no statement of its own yet.
    bool isAtFunctionStart() const {
        return getInnermost() == TokenType::Function && !stack.back().hasStatement;
    }

    void noteStatement() {
        if (!stack.empty()) {
            stack.back().hasStatement = true;
        }
    }

    void open(TokenType keyword) { stack.push_back({keyword, false}); }

    /// Closes the innermost block, which has to be there, and returns its opening keyword.
    TokenType close();

private:
    struct Block {
        TokenType keyword;
        bool hasStatement;
    };

    std::vector<Block> stack;
};

} // namespace ca::lexer
