#include "ca/formatting/LegacyFormatter.h"
#include "legacy/Line.h"

namespace ca::formatting::legacy {

namespace {

/// Whether the innermost open thing is a function whose body stands at the function's own level.
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

/// Writes a line's first token, which is `Whitespace`, anew.
void rewriteBlanks(EditedLine line, std::uint32_t width, const Settings& settings) {
    const std::size_t before = line[0].lexeme.size();
    replaceBlanks(line[0].lexeme, before, width, settings);
    moveColumns(line, static_cast<long>(line[0].lexeme.size()) - static_cast<long>(before));
}

void insertBlanks(EditedLine line, std::uint32_t width, const Settings& settings) {
    Token token{TokenType::Whitespace, {}, line[0].line, 1};
    replaceBlanks(token.lexeme, 0, width, settings);
    const auto length = static_cast<long>(token.lexeme.size());
    line.insertFirst(std::move(token));
    moveColumns(line, length);
}

void eraseBlanks(EditedLine line) {
    const auto length = static_cast<long>(line[0].lexeme.size());
    line.erase(0);
    line[0].column = 1;
    moveColumns(line, -length);
}

/// A comment line holds its leading blanks in its lexeme.
void indentLineComment(EditedLine line, std::uint32_t width, const Settings& settings) {
    std::u16string& lexeme = line[0].lexeme;
    const auto before = static_cast<long>(lexeme.size());
    replaceBlanks(lexeme, getLeadingBlanks(lexeme).size(), width, settings);
    moveColumns(line, static_cast<long>(lexeme.size()) - before);
}

/// Throws std::out_of_range for a line of blanks only, which is no line of a block comment.
void indentBlockCommentLine(std::u16string& lexeme, std::uint32_t width, const Settings& settings) {
    const std::size_t length = getLeadingBlanks(lexeme).size();
    static_cast<void>(lexeme.at(length));
    replaceBlanks(lexeme, length, width, settings);
}

void indentLoneToken(Token& token, std::uint32_t width, const Settings& settings) {
    if (token.type == TokenType::BlockCommentOpen || token.type == TokenType::BlockCommentClose) {
        indentBlockCommentLine(token.lexeme, width, settings);
    }
}

} // namespace

std::uint32_t subtractLevel(std::uint32_t width, const Settings& settings) {
    return settings.indentSize < width ? width - settings.indentSize : 0;
}

std::uint32_t getIndentation(const LegacyFormatter& formatter, LineView line) {
    if (formatter.nestingStack.empty()) {
        return formatter.currentIndentation;
    }
    if (line.size() == 1) {
        return getIndentationOfLoneToken(formatter, line[0].type);
    }
    const Token& top = formatter.nestingStack.back();
    const TokenType first = getFirstCodeToken(line).type;
    if (first == TokenType::End && formatter.isAnOpeningKeyword(top.type)) {
        return isBodyNotIndented(formatter) ? top.column : subtractLevel(top.column, formatter.settings);
    }
    if (formatter.isASecondaryKeyword(first)) {
        return subtractLevel(top.column, formatter.settings);
    }
    if (formatter.isASecondaryIndentedKeyword(first)) {
        return top.column;
    }
    if (first == TokenType::Function) {
        return getIndentationOfFunction(formatter);
    }
    return formatter.currentIndentation;
}

void indentLine(const LegacyFormatter& formatter, EditedLine line) {
    const Settings& settings = formatter.settings;
    const std::uint32_t width = getIndentation(formatter, line);
    const TokenType first = line[0].type;
    if (line.size() == 1 && !isLineEnding(first)) {
        indentLoneToken(line[0], width, settings);
    } else if (first == TokenType::LineComment) {
        indentLineComment(line, width, settings);
    } else if (first != TokenType::Whitespace) {
        if (width != 0) {
            insertBlanks(line, width, settings);
        }
    } else if (width != 0) {
        rewriteBlanks(line, width, settings);
    } else {
        eraseBlanks(line);
    }
}

unsigned int LegacyFormatter::calculateIndentationOfLine(const std::vector<Token>& line) const {
    return getIndentation(*this, line);
}

void LegacyFormatter::indentLineInPlace(std::vector<Token>& line) const {
    indentLine(*this, EditedLine(line));
}

} // namespace ca::formatting::legacy
