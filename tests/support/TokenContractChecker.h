#pragma once

#include <ca/lexer/Token.h>

#include <string>
#include <vector>

/// Every broken rule of the token list, a line each with the place; empty for a list that keeps the contract:
///
/// 1. The lexemes joined are the text, and no token but `EndOfInput` is empty.
/// 2. `EndOfInput` stands last and nowhere else.
/// 3. `line` and `column` of each token are where its first character stands.
/// 4. `Whitespace` is blanks only, and no two stand side by side.
/// 5. A line ending is spelled as its number says; only block comment lines hold others, at their end.
/// 6. A token of a block comment is a whole physical line.
/// 7. A `LineComment` stands first on its line with its blanks, comments end where the line ends, and a
///    `LineTail` or `TrailingComment` is never first.
/// 8. `End` has an opening keyword before it that no other `End` has taken.
std::vector<std::string> checkTokenContract(const std::u16string& text,
                                            const std::vector<ca::lexer::Token>& tokens);
