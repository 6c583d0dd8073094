#pragma once

#include "ca/lexer/KeywordTypes.h"
#include "ca/lexer/Token.h"
#include "lexer/Keywords.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace ca::syntax {

using lexer::Token;
using lexer::TokenType;
namespace keyword = lexer::keyword;

/// A token of code, or the end of a line that ends something: whitespace, comments and continued line ends
/// are left out.
///
/// Several line ends in a row are one. Its number is that of LF, however the line ends are spelled.
struct CodeToken {
    TokenType type;
    std::uint32_t index;    ///< of the token in the token list
    std::uint32_t position; ///< of its first character in the text
    bool isAfterGap;        ///< there is whitespace, a comment or a continuation before it
};

constexpr TokenType lineEnd = TokenType::LineEnding75;

/// The grammar's view of a token list, with one place in it. The list has to outlive the cursor.
class TokenCursor {
public:
    explicit TokenCursor(const std::vector<Token>& tokens);

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

    const Token& getToken(const CodeToken& code) const { return tokens[code.index]; }
    std::size_t getLength(const CodeToken& code) const { return tokens[code.index].lexeme.size(); }

    /// All tokens of code, with two `EndOfInput` at the end.
    const std::vector<CodeToken>& getCodes() const { return codes; }

    /// The opening line of a block comment that runs to the end of the text, if there is one.
    const std::optional<std::uint32_t>& getUnclosedComment() const { return unclosedComment; }

private:
    const std::vector<Token>& tokens;
    std::vector<CodeToken> codes;
    std::size_t place = 0;
    std::optional<std::uint32_t> unclosedComment;
};

using lexer::dividesBlock;
using lexer::opensBlock;

} // namespace ca::syntax
