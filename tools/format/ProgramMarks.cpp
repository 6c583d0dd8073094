#include "format/ProgramMarks.h"

#include "text/Whitespace.h"

#include <algorithm>
#include <utility>

namespace ombrel {

namespace {

using ca::lexer::Token;
using ca::lexer::TokenType;

bool isMark(const Token& token) {
    const bool isSeparator = token.type == TokenType::Semicolon || token.type == TokenType::Comma;
    return !isSeparator && (!token.isWhitespace() || token.isComment());
}

TokenType getCommentType(const Token& token) {
    return token.type == TokenType::TrailingComment ? TokenType::LineComment : token.type;
}

} // namespace

std::u16string_view getCommentText(const Token& token) {
    return trim(removeLineEnds(token.lexeme));
}

std::size_t getIndentation(const Token& token) {
    return token.isComment() ? countLeadingWhitespace(token.lexeme) : 0;
}

bool isSame(const Token& a, const Token& b) {
    if (a.type == b.type && a.lexeme == b.lexeme) {
        return true;
    }
    if (a.isComment() && b.isComment()) {
        return getCommentType(a) == getCommentType(b) && getCommentText(a) == getCommentText(b);
    }
    return a.isComment() == b.isComment() && a.lexeme == b.lexeme;
}

Marks::Marks(const std::vector<Token>& tokens) : tokens(tokens) {
    std::size_t offset = 0;
    std::uint32_t index = 0;
    marks.reserve(tokens.size() / 2 + 1);
    for (const Token& token : tokens) {
        if (isMark(token)) {
            marks.push_back({static_cast<std::uint32_t>(offset + getIndentation(token)), index});
        }
        offset += token.lexeme.size();
        ++index;
    }
}

std::size_t Marks::find(const ca::SyntaxError& error) const {
    const auto isBefore = [&](const Mark& mark) {
        const Token& token = tokens[mark.index];
        return std::pair(token.line, token.column) < std::pair(error.line, error.column);
    };
    return static_cast<std::size_t>(std::partition_point(marks.begin(), marks.end(), isBefore) -
                                    marks.begin());
}

} // namespace ombrel
