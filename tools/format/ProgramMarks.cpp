#include "format/ProgramMarks.h"

#include "format/TokenKinds.h"
#include "text/LineSplitter.h"
#include "text/Whitespace.h"

#include <algorithm>

namespace ombrel {

namespace {

using ca::lexer::TokenType;

bool isMark(TokenType type) {
    return !isSeparator(type) && (!ca::lexer::isWhitespace(type) || ca::lexer::isComment(type));
}

TokenType getCommentType(const TokenView& token) {
    return token.type == TokenType::TrailingComment ? TokenType::LineComment : token.type;
}

/// Line and column count from 1.
std::size_t findOffset(std::u16string_view text, std::uint32_t line, std::uint32_t column) {
    std::size_t offset = 0;
    LineSplitter lines(text);
    for (std::uint32_t i = 1; i < line; ++i) {
        if (const auto before = lines.getNext()) {
            offset += before->content.size() + before->end.size();
        }
    }
    return offset + column - 1;
}

} // namespace

std::u16string_view getCommentText(const TokenView& token) {
    return trim(removeLineEnds(token.lexeme));
}

bool isSame(const TokenView& a, const TokenView& b) {
    if (a.type == b.type && a.lexeme == b.lexeme) {
        return true;
    }
    if (a.isComment() && b.isComment()) {
        return getCommentType(a) == getCommentType(b) && getCommentText(a) == getCommentText(b);
    }
    return a.isComment() == b.isComment() && a.lexeme == b.lexeme;
}

Marks::Marks(std::u16string_view text, std::span<const ca::lexer::TokenSpan> tokens) : text(text) {
    std::uint32_t offset = 0;
    marks.reserve(tokens.size() / 2 + 1);
    for (const ca::lexer::TokenSpan& token : tokens) {
        if (isMark(token.type)) {
            const auto indentation = static_cast<std::uint32_t>(
                ca::lexer::isComment(token.type) ? countLeadingWhitespace(text.substr(offset, token.length))
                                                 : 0);
            marks.push_back({offset + indentation, token.length - indentation, token.type});
        }
        offset += token.length;
    }
}

std::size_t Marks::find(const ca::SyntaxError& error) const {
    return findPlace(marks, findOffset(text, error.line, error.column), 0);
}

} // namespace ombrel
