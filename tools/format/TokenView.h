#pragma once

#include <ca/lexer/TokenSpan.h>

#include <string_view>

namespace ombrel {

/// A token as a view of its text.
struct TokenView {
    ca::lexer::TokenType type;
    std::u16string_view lexeme;

    bool isWhitespace() const { return ca::lexer::isWhitespace(type); }
    bool isComment() const { return ca::lexer::isComment(type); }
    bool isEndOfLine() const { return ca::lexer::isEndOfLine(type); }
};

} // namespace ombrel
