#include "syntax/TokenCursor.h"

#include "lexer/Nesting.h"

namespace ca::syntax {

namespace {

/// Decides which line ends end something. A continued line goes on after comments and, inside a matrix or a
/// brace, after empty lines:
///
///     x = 1 + ...
///         % the second part
///         2
class LineEndFilter {
public:
    /// Notes a token that is no code. Whether it is a line end that ends something.
    bool passTrivia(TokenType type) {
        switch (type) {
        case TokenType::Continuation:
            state = Continued;
            return false;
        case TokenType::LineComment:
            isLineEmpty = false;
            return false;
        case TokenType::LineEnding75:
        case TokenType::LineEnding76:
        case TokenType::LineEnding77:
            return passLineEnd();
        default:
            return false;
        }
    }

    void passCode(TokenType type) {
        state = InCode;
        if (opensBlock(type) || type == TokenType::End) {
            brackets.clear();
        } else {
            brackets.pass(type);
        }
    }

private:
    enum State { InCode, Continued, Resumed };

    bool passLineEnd() {
        const bool isEmpty = state == Resumed && isLineEmpty;
        isLineEmpty = true;
        if (state == Continued || (state == Resumed && (!isEmpty || brackets.isListOpen()))) {
            state = Resumed;
            return false;
        }
        state = InCode;
        if (!brackets.isListOpen()) {
            brackets.clear();
        }
        return true;
    }

    State state = InCode;
    bool isLineEmpty = true;
    lexer::Brackets brackets;
};

} // namespace

Token makeToken(std::u16string_view text, const CodeToken& code) {
    return {code.type, std::u16string(text.substr(code.position, code.length)), code.line, code.column};
}

TokenCursor::TokenCursor(std::u16string_view text, std::span<const TokenSpan> tokens) {
    codes.reserve(tokens.size() + 1);
    LineEndFilter filter;
    lexer::TokenPlace at;
    std::size_t openComments = 0;
    bool isAfterGap = false;
    for (const TokenSpan& token : tokens) {
        const CodeToken code{token.type, isAfterGap, at.position, token.length, at.line, at.column};
        at.pass(text, token);
        isAfterGap = lexer::isWhitespace(token.type);
        if (!isAfterGap) {
            filter.passCode(token.type);
            codes.push_back(code);
            continue;
        }
        if (token.type == TokenType::BlockCommentOpen && openComments++ == 0) {
            unclosedComment = code;
        } else if (token.type == TokenType::BlockCommentClose && --openComments == 0) {
            unclosedComment.reset();
        }
        if (filter.passTrivia(token.type) && (codes.empty() || codes.back().type != lineEnd)) {
            codes.push_back(code);
            codes.back().type = lineEnd;
        }
    }
    codes.push_back(codes.back());
}

} // namespace ca::syntax
