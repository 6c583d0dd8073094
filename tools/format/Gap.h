#pragma once

#include "format/PlaceSearch.h"
#include "format/TokenView.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// A program is code tokens with gaps between them. A code token is all that a formatter must leave alone; a
// gap is what it may rewrite: whitespace, line ends, commas, semicolons and continuations, with comments
// among them. A comma or a semicolon is never a code token, whether the syntax tree knows of it or not:
//
//     x = [1, 2]; % why      seven code tokens, and eight gaps: the first is empty, the last two are
//                            "; % why" and what follows it up to the end of the text

namespace ombrel {

/// The code tokens of a text and the gaps before them. Keeps the text and the list of all tokens by
/// reference.
class GapList {
public:
    using Tokens = std::span<const ca::lexer::TokenSpan>;

    GapList(const std::u16string& text, Tokens tokens);

    /// The number of gaps, which is the number of code tokens, the end of the text among them.
    std::size_t getCount() const { return places.size(); }

    /// The code token after a gap.
    TokenView getToken(std::size_t gap) const {
        return {getType(gap), std::u16string_view(text).substr(getEnd(gap), places[gap].length)};
    }

    ca::lexer::TokenType getType(std::size_t gap) const { return places[gap].type; }

    /// Offset of the code token after a gap, which is the end of the gap.
    std::size_t getEnd(std::size_t gap) const { return places[gap].offset; }

    /// Offset of the end of that token.
    std::size_t getTokenEnd(std::size_t gap) const { return getEnd(gap) + places[gap].length; }

    /// Offset of a gap.
    std::size_t getBegin(std::size_t gap) const { return gap == 0 ? 0 : getTokenEnd(gap - 1); }

    std::u16string_view getText(std::size_t gap) const {
        return std::u16string_view(text).substr(getBegin(gap), getEnd(gap) - getBegin(gap));
    }

    /// Calls `visit` with each token in a gap and its offset. Stops where that returns false, and returns
    /// whether it got to the end.
    template <class Visit>
    bool visitTokens(std::size_t gap, Visit visit) const {
        std::size_t offset = getBegin(gap);
        for (std::size_t i = gap == 0 ? 0 : places[gap - 1].index + 1; i < places[gap].index; ++i) {
            const TokenView token = {tokens[i].type,
                                     std::u16string_view(text).substr(offset, tokens[i].length)};
            if (!visit(token, offset)) {
                return false;
            }
            offset += tokens[i].length;
        }
        return true;
    }

    const std::u16string& getSource() const { return text; }

    /// The first gap whose code token is at this offset or after it. Quick if it comes soon after the
    /// gap `hint`.
    std::size_t find(std::size_t offset, std::size_t hint = 0) const {
        return findPlace(places, offset, hint);
    }

private:
    struct Place { // 32 bits as in the syntax tree: there are many
        std::uint32_t offset;
        std::uint32_t length;
        std::uint32_t index; ///< in the token list
        ca::lexer::TokenType type;
    };

    const std::u16string& text;
    Tokens tokens;
    std::vector<Place> places;
};

/// A comment in a gap: its text without the whitespace before it and without a line end.
struct GapComment {
    std::size_t offset; ///< in the text whose gap it is
    std::u16string_view text;
    ca::lexer::TokenType type;
};

/// The comments in a gap of the source, in order; each line of a block comment is one. Replaces what is in
/// the list.
void getComments(const GapList& gaps, std::size_t gap, std::vector<GapComment>& comments);

/// Finds the gap in another text, in which it begins at `begin` and has the same comments, in the same order
/// and followed by the same code token. Returns the place of that token, nothing if the text is another one.
///
/// The text is matched, never tokenized: in `elsec` an `else` and a `c` are found. Three dots before a code
/// token that starts with one, as in `1....*2`, are a continuation if their line ends there.
std::optional<std::size_t> matchGap(const GapList& gaps, std::size_t gap, std::u16string_view text,
                                    std::size_t begin);

/// The same for another text of the gap, with the places in that. False if it hasn't the same comments.
bool findComments(const GapList& gaps, std::size_t gap, std::u16string_view text,
                  std::vector<GapComment>& comments);

/// Whether a character can be layout: whitespace, line ends and separators. The dots of a continuation can
/// be too, but not each for itself.
bool isLayout(char16_t c);

/// Whether a token is a line of a block comment.
bool isLineOfBlock(ca::lexer::TokenType type);

} // namespace ombrel
