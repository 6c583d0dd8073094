#pragma once

#include "ca/SyntaxError.h"
#include "syntax/TokenCursor.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ca::syntax {

/// A change of a text. It adds and removes no line, so the lines of the new text have the same numbers.
struct Replacement {
    std::size_t position;       ///< of the first character, from the start of the text, in 16-bit characters
    std::uint32_t line, column; ///< of the same, from 1
    std::size_t length;         ///< of what is replaced, 16-bit characters
    std::u16string text;
};

/// What a user probably meant: a change that may put a fault right, and the error that tells the user so.
struct Correction {
    std::vector<Replacement> replacements; ///< in the order of the text, apart from each other
    SyntaxError error;
};

/// A name at the start of a statement that looks like keywords: `whiel`.
struct DoubtfulWord {
    std::size_t place; ///< among the code tokens
    std::vector<std::u16string_view> keywords;
};

/// All such names of a text, in its order. `codes` are its tokens.
std::vector<DoubtfulWord> findDoubtfulWords(std::u16string_view text, const std::vector<CodeToken>& codes);

/// A text that doesn't parse, with its tokens, all of which have to outlive it.
struct FaultyText {
    Token getToken(std::size_t place) const { return makeToken(text, codes[place]); }
    TokenType getType(std::size_t place) const { return codes[place].type; }
    std::u16string_view getLexeme(std::size_t place) const {
        return text.substr(codes[place].position, codes[place].length);
    }

    std::u16string_view text;
    const std::vector<CodeToken>& codes;       ///< see TokenCursor; places are indexes into these
    const std::vector<DoubtfulWord>& doubtful; ///< of the text
};

/// The corrections that could explain the error, the most likely first. They are guesses: whether one puts
/// the fault right is for the caller to try.
std::vector<Correction> findSlips(const FaultyText& faulty, const SyntaxError& error);

} // namespace ca::syntax
