#include "format/IndentationGuard.h"

#include <algorithm>

namespace ombrel {

namespace {

using ca::formatting::legacy::BlankLineStyle;
using ca::formatting::legacy::LegacyFormatter;
using ca::formatting::legacy::Settings;
using ca::lexer::Token;
using ca::lexer::TokenType;

using Line = std::vector<Token>;

std::uint64_t getTextLength(const std::vector<Token>& tokens) {
    std::uint64_t length = 0;
    for (const Token& token : tokens) {
        length += token.lexeme.size();
    }
    return length;
}

std::uint64_t getBlankLimit(std::uint64_t textLength) {
    return maximalBlankCount + 8 * textLength;
}

/// Bounds the width of all lines from above, in one look at the token types and without measuring anything.
///
/// A level is gained by what opens and given back by what closes, so the width stays below the levels that
/// can be open at once, except for lines that gain a level which nobody gives back: those that start with
/// `else`, `case` and the like while nothing is open, or that close or open something behind such a word.
/// Each of them is counted as levels that stay for good. Lines in front of the range count with the width
/// they have.
class WidthBound {
public:
    WidthBound(const std::vector<Token>& tokens, const Settings& settings)
        : formatter(settings), settings(settings) {
        for (const Token& token : tokens) {
            visit(token);
        }
    }

    /// False if an `End` may have taken a bracket from the stack: then no bound holds.
    bool isKnown() const { return isBalanced; }

    std::uint64_t getColumns() const {
        return widestBlanks + settings.indentSize * (2 * std::uint64_t{maximalDepth} + lastingLevels + 2);
    }

    std::uint64_t getLineCount() const { return lineCount; }
    std::uint64_t getTextLength() const { return textLength; }

private:
    void visit(const Token& token) {
        const TokenType type = token.type;
        textLength += token.lexeme.size();
        measureBlanks(token);
        if (endsLine(type)) {
            ++lineCount;
            isAtLineStart = true;
            startsWithSecondary = false;
            return;
        }
        if (isAtLineStart && type != TokenType::Whitespace) {
            isAtLineStart = false;
            startsWithSecondary =
                formatter.isASecondaryKeyword(type) || formatter.isASecondaryIndentedKeyword(type);
            lastingLevels += startsWithSecondary && stack.empty() ? 1 : 0;
        }
        trackNesting(type);
    }

    void measureBlanks(const Token& token) {
        if (lineCount < settings.firstLine && isAtLineStart) {
            const std::size_t blanks = std::min(token.lexeme.find_first_not_of(u" \t"), token.lexeme.size());
            widestBlanks = std::max(widestBlanks, std::uint64_t{blanks} * settings.tabSize);
        }
    }

    void trackNesting(TokenType type) {
        const bool opens = formatter.isAnOpeningKeyword(type);
        const bool closesBracket = type == TokenType::CloseSquareBracket || type == TokenType::CloseBrace;
        if (opens) {
            stack.push_back(type);
            maximalDepth = std::max(maximalDepth, stack.size());
        } else if (stack.empty()) {
            return;
        } else if (type == TokenType::End) {
            isBalanced = isBalanced && !isBracket(stack.back());
            stack.pop_back();
        } else if (closesBracket && isBracket(stack.back())) {
            stack.pop_back();
        }
        const bool changesNesting = opens || closesBracket || type == TokenType::End;
        lastingLevels += startsWithSecondary && changesNesting ? 1 : 0;
    }

    static bool isBracket(TokenType type) {
        return type == TokenType::OpenSquareBracket || type == TokenType::OpenBrace;
    }

    bool endsLine(TokenType type) const {
        return formatter.isALineEnding(type) || type == TokenType::BlockCommentOpen ||
               type == TokenType::BlockCommentBody || type == TokenType::BlockCommentClose;
    }

    LegacyFormatter formatter;
    const Settings& settings;
    std::vector<TokenType> stack;
    std::size_t maximalDepth = 0;
    std::uint64_t lastingLevels = 0;
    std::uint64_t widestBlanks = 0;
    std::uint64_t lineCount = 1;
    std::uint64_t textLength = 0;
    bool isAtLineStart = true;
    bool startsWithSecondary = false;
    bool isBalanced = true;
};

/// Walks the lines as the formatter itself does, with its own steps, and stops before it would write a line
/// that is too wide.
class DryRun {
public:
    DryRun(const std::vector<Token>& tokens, const Settings& settings)
        : formatter(settings), blankLimit(getBlankLimit(getTextLength(tokens))) {
        formatter.functionsHaveEnds = formatter.checkForFunctionEnds(tokens) ? 1 : 0;
        lines = formatter.getLines(tokens);
    }

    std::optional<RunawayIndentation> run() {
        const Settings& settings = formatter.settings;
        const std::size_t last = std::min<std::size_t>(lines.size(), settings.lastLine);
        for (std::size_t index = 0; index < last; ++index) {
            const bool isInRange = index + 1 >= settings.firstLine;
            if (!visit(lines[index], isInRange)) {
                return RunawayIndentation{static_cast<std::uint32_t>(index + 1), width, blankCount};
            }
            Line().swap(lines[index]);
        }
        return std::nullopt;
    }

private:
    bool visit(Line& line, bool isInRange) {
        if (formatter.isBlankLine(line)) {
            const bool isIndented = formatter.settings.blankLineStyle == BlankLineStyle::Indent;
            return !isInRange || !isIndented || indent(line);
        }
        if (isInRange && line.front().type == TokenType::BlockCommentBody) {
            return true;
        }
        if (isInRange && !indent(line)) {
            return false;
        }
        formatter.trackIndentationCausedByLine(line);
        return true;
    }

    bool indent(Line& line) {
        formatter.removeTrailingWhitespaceInPlace(line);
        if (line.front().type == TokenType::EndOfInput) {
            return true;
        }
        width = formatter.calculateIndentationOfLine(line);
        blankCount += formatter.calculateNumOfWhitespaceChar(width);
        if (width > maximalIndentation || blankCount > blankLimit) {
            return false;
        }
        formatter.indentLineInPlace(line);
        return true;
    }

    LegacyFormatter formatter;
    std::uint64_t blankLimit;
    std::vector<Line> lines;
    std::uint32_t width = 0;
    std::uint64_t blankCount = 0;
};

bool isClearlyHarmless(const std::vector<Token>& tokens, const Settings& settings) {
    const WidthBound bound(tokens, settings);
    return bound.isKnown() && bound.getColumns() <= maximalIndentation &&
           bound.getColumns() * bound.getLineCount() <= getBlankLimit(bound.getTextLength());
}

} // namespace

std::optional<RunawayIndentation> findRunawayIndentation(const std::vector<Token>& tokens,
                                                         const Settings& settings) {
    if (isClearlyHarmless(tokens, settings)) {
        return std::nullopt;
    }
    return DryRun(tokens, settings).run();
}

} // namespace ombrel
