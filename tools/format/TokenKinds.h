#pragma once

#include <ca/lexer/Token.h>

namespace ombrel {

/// A name, whether it is spelled like a keyword or not.
bool isName(ca::lexer::TokenType type);

/// A number of any kind.
bool isNumber(ca::lexer::TokenType type);

/// A string of either kind.
bool isLiteral(ca::lexer::TokenType type);

/// A closing bracket of any kind.
bool isClosing(ca::lexer::TokenType type);

/// An opening bracket of any kind.
bool isOpening(ca::lexer::TokenType type);

/// `'` or `.'` as an operator.
bool isTranspose(ca::lexer::TokenType type);

/// Whether an operand can end in a token.
bool endsOperand(ca::lexer::TokenType type);

/// `+` or `-`.
bool isSign(ca::lexer::TokenType type);

/// A comma or a semicolon, which is neither code nor a comment.
bool isSeparator(ca::lexer::TokenType type);

/// A line for the shell, which reaches to its end.
bool isShellLine(ca::lexer::TokenType type);

} // namespace ombrel
