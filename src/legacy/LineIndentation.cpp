#include "ca/formatting/LegacyFormatter.h"
#include "ca/formatting/LineTracker.h"
#include "legacy/Line.h"

#include <utility>

namespace ca::formatting::legacy {

namespace {

/// Whether the innermost open thing is a function whose body is not indented.
bool isBodyNotIndented(const LegacyFormatter& formatter) {
    const FunctionStyle style = formatter.settings.functionIndentStyle;
    return formatter.nestingStack.back().type == TokenType::Function &&
           (style == FunctionStyle::Classic ||
            (style == FunctionStyle::Mixed && formatter.functionDepth == 1));
}

/// A line of one token: a line of a block comment, the end of the text, or a bare line end.
std::uint32_t getIndentationOfLoneToken(const LegacyFormatter& formatter, TokenType type) {
    const Token& top = formatter.nestingStack.back();
    switch (type) {
    case TokenType::BlockCommentClose:
        return top.column;
    case TokenType::BlockCommentOpen:
        return top.type == TokenType::BlockCommentOpen ? top.column : formatter.currentIndentation;
    case TokenType::EndOfInput:
        return 0;
    default:
        return formatter.currentIndentation;
    }
}

/// In a file whose functions have no end the stack only grows, so each function goes to the margin. A
/// function in a body that isn't indented still steps in one level.
std::uint32_t getIndentationOfFunction(const LegacyFormatter& formatter) {
    if (formatter.functionsHaveEnds == 0) {
        return 0;
    }
    const std::uint32_t step = isBodyNotIndented(formatter) ? formatter.settings.indentSize : 0;
    return formatter.currentIndentation + step;
}

using Line = std::vector<Token>;

/// Changes the width of a line's first token, which is `Whitespace`.
void rewriteWhitespace(const LegacyFormatter& formatter, Line& line, std::uint32_t width) {
    const std::size_t before = line[0].lexeme.size();
    replaceWhitespace(line[0].lexeme, before, width, formatter.settings);
    const std::size_t after = line[0].lexeme.size();
    formatter.adjustLineOffsetInPlace(line, static_cast<long>(after) - static_cast<long>(before));
}

void insertWhitespace(const LegacyFormatter& formatter, Line& line, std::uint32_t width) {
    Token token{TokenType::Whitespace, formatter.buildWhitespaceLexeme(width), line[0].line, 1};
    const auto length = static_cast<long>(token.lexeme.size());
    line.insert(line.begin(), std::move(token));
    formatter.adjustLineOffsetInPlace(line, length);
}

void eraseWhitespace(const LegacyFormatter& formatter, Line& line) {
    const auto length = static_cast<long>(line[0].lexeme.size());
    line.erase(line.begin());
    line[0].column = 1;
    formatter.adjustLineOffsetInPlace(line, -length);
}

/// A comment line holds its leading whitespace in its lexeme.
void indentLineComment(const LegacyFormatter& formatter, Line& line, std::uint32_t width) {
    std::u16string& lexeme = line[0].lexeme;
    const auto before = static_cast<long>(lexeme.size());
    replaceWhitespace(lexeme, getLeadingWhitespace(lexeme).size(), width, formatter.settings);
    formatter.adjustLineOffsetInPlace(line, static_cast<long>(lexeme.size()) - before);
}

/// Throws std::out_of_range for a line of whitespace only, which is no line of a block comment.
void indentBlockCommentLine(std::u16string& lexeme, std::uint32_t width, const Settings& settings) {
    const std::size_t length = getLeadingWhitespace(lexeme).size();
    static_cast<void>(lexeme.at(length));
    replaceWhitespace(lexeme, length, width, settings);
}

void indentLoneToken(Token& token, std::uint32_t width, const Settings& settings) {
    if (token.type == TokenType::BlockCommentOpen || token.type == TokenType::BlockCommentClose) {
        indentBlockCommentLine(token.lexeme, width, settings);
    }
}

} // namespace

unsigned int LegacyFormatter::calculateIndentationOfLine(const std::vector<Token>& line) const {
    if (nestingStack.empty()) {
        return currentIndentation;
    }
    if (line.size() == 1) {
        return getIndentationOfLoneToken(*this, line[0].type);
    }
    const Token& top = nestingStack.back();
    const TokenType first = getFirstCodeToken(line);
    if (first == TokenType::End && isAnOpeningKeyword(top.type)) {
        return isBodyNotIndented(*this) ? top.column : subtractLevel(top.column, settings);
    }
    if (isASecondaryKeyword(first)) {
        return subtractLevel(top.column, settings);
    }
    if (isASecondaryIndentedKeyword(first)) {
        return top.column;
    }
    if (first == TokenType::Function) {
        return getIndentationOfFunction(*this);
    }
    return currentIndentation;
}

void LegacyFormatter::indentLineInPlace(std::vector<Token>& line) const {
    const std::uint32_t width = calculateIndentationOfLine(line);
    const TokenType first = line[0].type;
    if (line.size() == 1 && !isLineEnding(first)) {
        indentLoneToken(line[0], width, settings);
    } else if (first == TokenType::LineComment) {
        indentLineComment(*this, line, width);
    } else if (first != TokenType::Whitespace) {
        if (width != 0) {
            insertWhitespace(*this, line, width);
        }
    } else if (width != 0) {
        rewriteWhitespace(*this, line, width);
    } else {
        eraseWhitespace(*this, line);
    }
}

} // namespace ca::formatting::legacy
