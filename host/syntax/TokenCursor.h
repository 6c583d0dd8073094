#pragma once

#include "ca/lexer/KeywordTypes.h"
#include "ca/lexer/TokenSpan.h"
#include "lexer/Keywords.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace ca::syntax {

using lexer::Token;
using lexer::TokenSpan;
using lexer::TokenType;
namespace keyword = lexer::keyword;

/// A token of code, or the end of a line that ends something: whitespace, comments and continued line ends
/// are left out.
///
/// Several line ends in a row are one. Its number is that of LF, however the line ends are spelled.
struct CodeToken {
    TokenType type;
    bool isAfterGap;        ///< there is whitespace, a comment or a continuation before it
    std::uint32_t position; ///< of its first character in the text, 16-bit characters from 0
    std::uint32_t length;   ///< in 16-bit characters
    std::uint32_t line;     ///< from 1
    std::uint32_t column;   ///< 16-bit characters, from 1
};

/// The token itself, for messages.
Token makeToken(std::u16string_view text, const CodeToken& code);

constexpr TokenType lineEnd = TokenType::LineEnding75;

/// The grammar's view of the tokens of a text, with one place among them.
class TokenCursor {
public:
    TokenCursor(std::u16string_view text, std::span<const TokenSpan> tokens);

    const CodeToken& get() const { return codes[place]; }
    TokenType getType() const { return codes[place].type; }

    /// The token after the current one; `EndOfInput` is followed by itself.
    const CodeToken& getNext() const { return codes[place + 1]; }

    /// The type of the next token that is no line end, the current one included.
    TokenType getTypePastLineEnds() const { return getType() == lineEnd ? getNext().type : getType(); }

    /// Whether whitespace, a line end or the end of the text follows the current token.
    bool isBeforeGap() const {
        const CodeToken& next = getNext();
        return next.isAfterGap || next.type == lineEnd || next.type == TokenType::EndOfInput;
    }

    /// Whether the current token is the first of its line.
    bool isFirstOnLine() const { return place == 0 || codes[place - 1].type == lineEnd; }

    /// Goes on to the next token and returns the current one. Stays at `EndOfInput`.
    const CodeToken& advance() {
        const CodeToken& code = codes[place];
        if (code.type != TokenType::EndOfInput) {
            ++place;
        }
        return code;
    }

    void skipLineEnds() {
        if (getType() == lineEnd) {
            advance();
        }
    }

    std::size_t getPlace() const { return place; }
    void moveTo(std::size_t newPlace) { place = newPlace; }

    /// All tokens of code, with two `EndOfInput` at the end.
    const std::vector<CodeToken>& getCodes() const { return codes; }

    /// The opening line of a block comment that runs to the end of the text, if there is one.
    const std::optional<CodeToken>& getUnclosedComment() const { return unclosedComment; }

private:
    std::vector<CodeToken> codes;
    std::size_t place = 0;
    std::optional<CodeToken> unclosedComment;
};

using lexer::dividesBlock;
using lexer::opensBlock;

} // namespace ca::syntax
