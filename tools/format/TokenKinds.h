#pragma once

#include <ca/lexer/Token.h>

namespace ombrel {

/// A name, whether it is spelled like a keyword or not.
bool isName(const ca::lexer::Token& token);

/// A number of any kind.
bool isNumber(const ca::lexer::Token& token);

/// A string of either kind.
bool isLiteral(const ca::lexer::Token& token);

/// A closing bracket of any kind.
bool isClosing(const ca::lexer::Token& token);

/// An opening bracket of any kind.
bool isOpening(const ca::lexer::Token& token);

/// `'` or `.'` as an operator.
bool isTranspose(const ca::lexer::Token& token);

/// Whether an operand can end in a token.
bool endsOperand(const ca::lexer::Token& token);

/// `+` or `-`.
bool isSign(const ca::lexer::Token& token);

/// A line for the shell, which reaches to its end.
bool isShellLine(const ca::lexer::Token& token);

} // namespace ombrel
