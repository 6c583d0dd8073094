#pragma once

#include <ca/formatting/LegacyFormatter.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

// LegacyFormatter::indentCode() one line at a time, for callers that look at each line on its way: to stop in
// time, to use less memory than a second token list needs, or to format several ranges at once.
//
//     formatter.functionsHaveEnds = formatter.checkForFunctionEnds(tokens) ? 1 : 0;
//     forEachLine(tokens.begin(), tokens.end(), [&](std::vector<ca::lexer::Token>& line) {
//         formatLine(formatter, getLinePlace(settings, ++number), line);
//         ...
//         return true;
//     });

namespace ca::formatting::legacy {

/// True for a token after which a new line starts: a line end, or a line of a block comment.
inline bool endsLine(ca::lexer::TokenType type) {
    using enum ca::lexer::TokenType;
    return (LineEnding75 <= type && type <= LineEnding77) ||
           (BlockCommentOpen <= type && type <= BlockCommentClose);
}

/// Calls `visit` with each line of a token list, in order, until it returns false. The line is a scratch list
/// that `visit` may change and move tokens from. Move iterators move the tokens into it, so that only the
/// list's destruction is left to do.
template <class Iterator, class Visit>
void forEachLine(Iterator begin, Iterator end, Visit visit) {
    std::vector<ca::lexer::Token> line;
    while (begin != end) {
        const Iterator last =
            std::find_if(begin, end, [](const auto& token) { return endsLine(token.type); });
        const Iterator next = last == end ? end : last + 1;
        line.assign(begin, next);
        if (!visit(line)) {
            return;
        }
        begin = next;
    }
}

/// True for a token that changes the nesting wherever it is in its line. Of the other tokens, the steps below
/// look only at the first two and the last two of a line, which are of the last three before one is removed.
inline bool changesNesting(ca::lexer::TokenType type) {
    using enum ca::lexer::TokenType;
    switch (type) {
    case Function:
    case OpeningKeyword3:
    case OpeningKeyword4:
    case OpeningKeyword5:
    case OpeningKeyword6:
    case OpeningKeyword7:
    case OpeningKeyword13:
    case ClassLevelKeyword20:
    case OpeningKeyword21:
    case ClassLevelKeyword22:
    case OpeningKeyword23:
    case OpeningKeyword24:
    case OpeningKeyword25:
    case OpeningKeyword26:
    case OpenSquareBracket:
    case OpenBrace:
    case CloseSquareBracket:
    case CloseBrace:
    case End:
    case Continuation:
        return true;
    default:
        return false;
    }
}

/// Calls `visit(line, length)` with the outline of each line: the tokens that the steps look at, moved to a
/// scratch list, and the length of the whole line in 16-bit characters. For callers who don't need the rest
/// of the line, which is most of it. Stops when `visit` returns false.
template <class Visit>
void forEachOutline(std::vector<ca::lexer::Token>& tokens, Visit visit) {
    std::vector<ca::lexer::Token> line;
    for (std::size_t begin = 0, end = 0; begin != tokens.size(); begin = end) {
        std::size_t length = 0;
        bool isLineEnd = false;
        while (end != tokens.size() && !isLineEnd) {
            length += tokens[end].lexeme.size();
            isLineEnd = endsLine(tokens[end].type);
            ++end;
        }
        line.clear();
        for (std::size_t index = begin; index != end; ++index) {
            if (index < begin + 2 || index + 3 >= end || changesNesting(tokens[index].type)) {
                line.push_back(std::move(tokens[index]));
            }
        }
        if (!visit(line, length)) {
            return;
        }
    }
}

/// Where a line is, as seen from the lines that are to be changed.
enum class LinePlace {
    BeforeRange, ///< stays as it is, but sets the level of the lines after it
    InRange,
    AfterRange, ///< has no effect on anything
};

/// `number` counts from 1.
inline LinePlace getLinePlace(const Settings& settings, std::uint32_t number) {
    if (number > settings.lastLine) {
        return LinePlace::AfterRange;
    }
    return number < settings.firstLine ? LinePlace::BeforeRange : LinePlace::InRange;
}

/// What is done to a line, in this order.
struct LineSteps {
    bool trims;   ///< removeTrailingWhitespaceInPlace()
    bool indents; ///< indentLineInPlace()
    bool tracks;  ///< trackIndentationCausedByLine()
};

/// Blank lines are not tracked, so they neither change the level nor end a continuation. The inside of a
/// block comment is not moved.
inline LineSteps getLineSteps(const LegacyFormatter& formatter, LinePlace place,
                              const std::vector<ca::lexer::Token>& line) {
    const bool isInRange = place == LinePlace::InRange;
    if (formatter.isBlankLine(line)) {
        const BlankLineStyle style = formatter.settings.blankLineStyle;
        const bool trims = isInRange && style != BlankLineStyle::Ignore;
        return {trims, trims && style != BlankLineStyle::Trim, false};
    }
    const bool isInComment = line.front().type == ca::lexer::TokenType::BlockCommentBody;
    return {isInRange, isInRange && !isInComment, place != LinePlace::AfterRange};
}

/// Formats the line in place and carries the nesting over it.
inline void formatLine(LegacyFormatter& formatter, LinePlace place, std::vector<ca::lexer::Token>& line) {
    const LineSteps steps = getLineSteps(formatter, place, line);
    if (steps.trims) {
        formatter.removeTrailingWhitespaceInPlace(line);
    }
    if (steps.indents) {
        formatter.indentLineInPlace(line);
    }
    if (steps.tracks) {
        formatter.trackIndentationCausedByLine(line);
    }
}

} // namespace ca::formatting::legacy
