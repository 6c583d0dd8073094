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

/// LegacyFormatter::isAnOpeningKeyword().
inline bool opensNesting(ca::lexer::TokenType type) {
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
        return true;
    default:
        return false;
    }
}

/// True for a token that changes the nesting wherever it is in its line. Of the other tokens, the steps below
/// look only at the first two and the last two of a line, which are among the last three before one is
/// removed.
inline bool changesNesting(ca::lexer::TokenType type) {
    using enum ca::lexer::TokenType;
    return opensNesting(type) || type == CloseSquareBracket || type == CloseBrace || type == End ||
           type == Continuation;
}

/// LegacyFormatter::checkForFunctionEnds() one token at a time.
class FunctionEndFinder {
public:
    /// The formatter has to outlive the finder.
    explicit FunctionEndFinder(const LegacyFormatter& formatter) : formatter(formatter) {}

    /// True if this token is an `End` that closes a function.
    bool isFunctionEnd(ca::lexer::TokenType type) {
        using enum ca::lexer::TokenType;
        if (formatter.isAnOpeningKeyword(type)) {
            open.push_back(type);
            return false;
        }
        if (open.empty() || !closesTop(type)) {
            return false;
        }
        const bool isFunction = type == End && open.back() == Function;
        open.pop_back();
        return isFunction;
    }

private:
    /// Stricter about brackets than trackIndentationCausedByLine(): each kind closes only its own.
    bool closesTop(ca::lexer::TokenType type) const {
        using enum ca::lexer::TokenType;
        return type == End || (type == CloseBrace && open.back() == OpenBrace) ||
               (type == CloseSquareBracket && open.back() == OpenSquareBracket);
    }

    const LegacyFormatter& formatter;
    std::vector<ca::lexer::TokenType> open;
};

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
