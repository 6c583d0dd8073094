#pragma once

#include <ca/formatting/lineWalk.h>
#include <ca/lexer/LineTokenizer.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace ombrel {

/// The tokens that LegacyFormatter's steps look at, for each line of a text: usually less than half of them,
/// and kept without their text, so that a line costs about 60 bytes.
class LineOutlines {
public:
    /// Tokenizes the text, which has to outlive the outlines and to be shorter than 4 Gi characters.
    explicit LineOutlines(const std::u16string& text);

    /// LegacyFormatter::checkForFunctionEnds() of all tokens.
    bool hasFunctionEnds(const ca::formatting::legacy::LegacyFormatter& formatter) const;

    /// Calls `visit(line, length)` for each line, in order, until it returns false: with the tokens of the
    /// outline, a scratch list that `visit` may change, and the length of the whole line in 16-bit
    /// characters.
    template <class Visit>
    void forEach(Visit visit) const {
        std::vector<ca::lexer::Token> scratch;
        Cursor cursor;
        for (const Line& line : lines) {
            makeLine(line, cursor, scratch);
            if (!visit(scratch, std::size_t{line.length})) {
                return;
            }
        }
    }

private:
    struct OutlineToken {
        ca::lexer::TokenType type;
        std::uint32_t offset; ///< in its line
        std::uint32_t length;
    };

    struct Line {
        std::uint32_t length;
        std::uint32_t tokenCount; ///< of the outline
    };

    /// Where a line starts.
    struct Cursor {
        std::size_t offset = 0; ///< in the text
        std::size_t token = 0;
        std::uint32_t number = 0;
    };

    void addLine(std::span<const ca::lexer::TokenSpan> line);
    void makeLine(const Line& line, Cursor& cursor, std::vector<ca::lexer::Token>& scratch) const;

    const std::u16string& text;
    std::vector<OutlineToken> tokens;
    std::vector<Line> lines;
};

} // namespace ombrel
