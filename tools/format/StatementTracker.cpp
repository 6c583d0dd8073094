#include "format/StatementTracker.h"

#include "format/TokenKinds.h"

#include <ca/lexer/KeywordTypes.h>

#include <algorithm>

namespace ombrel {

namespace {

using ca::lexer::Token;
using ca::lexer::TokenType;

bool isLiteralOpening(TokenType type) {
    return type == TokenType::OpenSquareBracket || type == TokenType::OpenBrace;
}

TokenType getOpening(TokenType closing) {
    switch (closing) {
    case TokenType::CloseSquareBracket:
        return TokenType::OpenSquareBracket;
    case TokenType::CloseBrace:
        return TokenType::OpenBrace;
    default:
        return TokenType::OpenParenthesis;
    }
}

bool isCode(const Token& token) {
    return !token.isWhitespace() && token.type != TokenType::EndOfInput;
}

/// Whether a token ends a block, or the part of one.
bool closesPart(TokenType type) {
    return type == TokenType::End || ca::lexer::dividesBlock(type);
}

} // namespace

void StatementTracker::take(const Token& token) {
    ended = false;
    givenUp = false;
    if (token.isEndOfLine()) {
        takeLineEnd();
    } else if (token.type == TokenType::LineComment) {
        hasComment = true;
    } else if (token.type == TokenType::Continuation) {
        isContinued = true;
    } else if (isCode(token)) {
        takeCode(token);
    }
}

/// Comments after a continued line are skipped, and a blank line ends the statement.
void StatementTracker::takeLineEnd() {
    const bool isInLiteral = std::any_of(brackets.begin(), brackets.end(), isLiteralOpening);
    if (!isInLiteral && !isContinued && !(hasComment && inside)) {
        end();
    }
    isLineStart = true;
    isContinued = false;
    hasComment = false;
}

void StatementTracker::takeCode(const Token& token) {
    if (isLineStart && !brackets.empty() && (ca::lexer::opensBlock(token.type) || closesPart(token.type))) {
        end();
        givenUp = true;
    }
    isLineStart = false;
    if (isSeparator(token.type) && brackets.empty()) {
        end();
        return;
    }
    inside = true;
    if (isOpening(token.type)) {
        brackets.push_back(token.type);
    } else if (isClosing(token.type)) {
        close(getOpening(token.type));
    }
}

/// The innermost bracket of a kind, and all that is open in it.
void StatementTracker::close(TokenType opening) {
    const auto last = std::find(brackets.rbegin(), brackets.rend(), opening);
    if (last != brackets.rend()) {
        brackets.erase(last.base() - 1, brackets.end());
    }
}

void StatementTracker::end() {
    brackets.clear();
    inside = false;
    ended = true;
}

StatementSearch::StatementSearch(const StatementTracker& tracker, std::size_t offset, bool areFunctionsClosed)
    : tracker(tracker), offset(offset), codeEnd(offset), areFunctionsClosed(areFunctionsClosed),
      hasBegun(tracker.isInside()) {}

bool StatementSearch::take(const Token& token) {
    tracker.take(token);
    if (hasBegun && isBefore(token)) {
        end = codeEnd;
        return false;
    }
    if (isCode(token) && (hasBegun || !isSeparator(token.type))) {
        if (!hasBegun && closesPart(token.type)) {
            return false;
        }
        takeCode(token.type);
    }
    isOver = isOver || (hasBegun && depth <= 0 && tracker.hasEnded());
    offset += token.lexeme.size();
    if (token.isEndOfLine()) {
        takeLineEnd();
    }
    return !end;
}

/// Whether the statement was over before a token that says so.
bool StatementSearch::isBefore(const Token& token) const {
    return (depth == 0 && tracker.hasGivenUp()) ||
           (depth == 1 && token.type == TokenType::Function && !areFunctionsClosed);
}

void StatementSearch::takeCode(TokenType type) {
    hasBegun = true;
    hasCode = true;
    if (ca::lexer::opensBlock(type)) {
        ++depth;
    } else if (type == TokenType::End) {
        isOver = --depth <= 0;
    }
}

void StatementSearch::takeLineEnd() {
    if (isOver) {
        end = offset;
    }
    if (hasCode) {
        codeEnd = offset;
    }
    hasCode = false;
}

std::optional<std::size_t> StatementSearch::getEnd() const {
    return end || !hasBegun ? end : std::optional(offset);
}

bool hasFunctionEnds(const std::vector<Token>& tokens) {
    std::vector<TokenType> open;
    for (const Token& token : tokens) {
        if (ca::lexer::opensBlock(token.type)) {
            open.push_back(token.type);
        } else if (token.type == TokenType::End && !open.empty()) {
            if (open.back() == TokenType::Function) {
                return true;
            }
            open.pop_back();
        }
    }
    return false;
}

} // namespace ombrel
