#pragma once

#include "ca/lexer/Token.h"

#include <cstddef>

// Literals and operators: what can be cut from the text with no context. Each function reads from `text`,
// which a NUL character ends or follows, and never past that character.

namespace ca::lexer {

struct Piece {
    TokenType type;
    std::size_t length; ///< 16-bit characters
};

/// The longest number that starts at `text`, which points at a digit, or at a dot before a digit.
Piece scanNumber(const char16_t* text);

/// The longest operator at `text`, brackets and separators aside; length 0 if there is none. A `'` is the
/// transpose here, and `...` is no operator.
Piece scanOperator(const char16_t* text);

/// Length of the string literal that starts at `text` with its quote, 0 if it isn't closed on its line.
std::size_t scanString(const char16_t* text, const char16_t* textEnd);

inline bool isContinuation(const char16_t* text) {
    return text[0] == u'.' && text[1] == u'.' && text[2] == u'.';
}

} // namespace ca::lexer
