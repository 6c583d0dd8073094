#pragma once

#include <ca/lexer/Token.h>

#include <string>
#include <vector>

/// Every broken rule of the token list, a line each with the place; empty for a list that keeps the contract:
///
/// 1. The lexemes joined are the text, and no token but `EndOfInput` is empty.
/// 2. `EndOfInput` is last and nowhere else.
/// 3. `line` and `column` of each token are those of its first character.
/// 4. `Whitespace` is spaces and tabs only, and no two are adjacent.
/// 5. A line ending is spelled as its number says; only block comment lines hold others, at their end.
/// 6. A token of a block comment is a whole physical line.
/// 7. A `LineComment` is first on its line, whitespace included, comments end where the line ends, and a
///    `LineTail` or `TrailingComment` is never first.
/// 8. `End` has an opening keyword before it that no other `End` has taken.
std::vector<std::string> checkTokenContract(const std::u16string& text,
                                            const std::vector<ca::lexer::Token>& tokens);
