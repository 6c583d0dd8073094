#pragma once

#include "ca/lexer/Token.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace ca::lexer {

/// Where a word is a keyword.
enum class KeywordPlace : std::uint8_t {
    Anywhere,        ///< reserved
    ClassMember,     ///< where a member may start directly inside a class
    FunctionStart,   ///< arguments, before a function's first other statement
    ImportStatement, ///< import, at the start of a statement, before words
};

struct Keyword {
    TokenType type; ///< `End` for the word end, whatever it turns out to be
    KeywordPlace place;
};

/// The keyword spelled `word`, whether or not its place makes it one. The word is not empty.
std::optional<Keyword> findKeyword(std::u16string_view word);

/// Whether a line that begins with the keyword is never part of an expression, so that brackets that are
/// still open were never closed.
bool isStatementKeyword(Keyword keyword);

/// All words that are keywords somewhere, in alphabetical order.
std::vector<std::u16string_view> listKeywords();

} // namespace ca::lexer
