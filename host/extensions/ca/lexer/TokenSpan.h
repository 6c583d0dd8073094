#pragma once

#include <ca/lexer/Token.h>

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace ca::lexer {

/// A token without its text. The tokens of a text follow each other without a gap, so the lengths tell where
/// each of them is.
struct TokenSpan {
    TokenType type;
    std::uint32_t length; ///< in 16-bit characters
};

/// As the operations of Token with these names.
constexpr bool isWhitespace(TokenType type) {
    return (TokenType::LineEnding75 <= type && type <= TokenType::Continuation) ||
           type == TokenType::Whitespace;
}
constexpr bool isComment(TokenType type) {
    return TokenType::LineTail <= type && type <= TokenType::TrailingComment;
}
constexpr bool isEndOfLine(TokenType type) {
    return TokenType::LineEnding75 <= type && type <= TokenType::LineEnding77;
}

/// Whether a token of this type holds the end of its line, if the line has one.
constexpr bool holdsLineEnd(TokenType type) {
    return isEndOfLine(type) || (TokenType::BlockCommentOpen <= type && type <= TokenType::BlockCommentClose);
}

/// Where a token is. Walks over a text from token to token.
struct TokenPlace {
    std::uint32_t position = 0; ///< of its first character in the text, 16-bit characters from 0
    std::uint32_t line = 1;     ///< physical line, from 1
    std::uint32_t column = 1;   ///< 16-bit characters, from 1

    /// Goes on to the token after this one.
    void pass(std::u16string_view text, const TokenSpan& token) {
        position += token.length;
        column += token.length;
        const auto endsLine = [&] { return text[position - 1] == u'\n' || text[position - 1] == u'\r'; };
        if (holdsLineEnd(token.type) && endsLine()) {
            ++line;
            column = 1;
        }
    }
};

/// All tokens of lex() as types and lengths. Throws as it does.
OMBREL_HOST_API std::vector<TokenSpan> lexSpans(const std::u16string& text);

/// The same tokens with their texts.
std::vector<Token> makeTokens(std::u16string_view text, std::span<const TokenSpan> spans);

/// A token with its text.
inline Token makeToken(std::u16string_view text, const TokenSpan& span, const TokenPlace& place) {
    return {span.type, std::u16string(text.substr(place.position, span.length)), place.line, place.column};
}

} // namespace ca::lexer
