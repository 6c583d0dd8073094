#pragma once

#include "ca/lexer/Token.h"

#include <string>
#include <vector>

namespace ca::lexer {

/// Cuts a text into tokens: all of it, in order, whatever it holds.
///
/// The lexemes joined give back the text, the last token is the only `EndOfInput`, and two `Whitespace`
/// tokens are never next to each other. Text that is no Ombrel (a control character, an unclosed string, half
/// a surrogate pair) becomes `Unrecognized` tokens. Takes time and memory in proportion to the text.
///
/// Throws std::bad_alloc, also for a text of 4 Gi characters or more, and nothing else. May be called on any number of threads at once.
OMBREL_HOST_API std::vector<Token> lex(const std::u16string& text);

} // namespace ca::lexer
