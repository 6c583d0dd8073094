#include "format/Gap.h"

#include "format/TokenKinds.h"
#include "text/Whitespace.h"

namespace ombrel {

namespace {

using ca::lexer::TokenType;

bool isCode(TokenType type) {
    return !ca::lexer::isWhitespace(type) && !isSeparator(type);
}

GapComment makeComment(const TokenView& token, std::size_t offset) {
    const std::u16string_view line = token.lexeme;
    const std::size_t indentation = countLeadingWhitespace(line);
    return {offset + indentation, removeLineEnds(line.substr(indentation)), token.type};
}

/// Walks over one gap of a text.
class Matcher {
public:
    Matcher(std::u16string_view text, std::size_t position) : text(text), position(position) {}

    /// Stops after the comment.
    bool passComment(const TokenView& token) {
        const GapComment comment = makeComment(token, 0);
        if (isInsideBlock(token)) {
            passLineEnd();
            passWhitespace();
        } else {
            passLayout(Dots::AreContinuation);
        }
        found = position;
        return pass(comment.text);
    }

    /// Stops before the code token.
    bool reach(const TokenView& token) {
        passLayout(token.lexeme.starts_with(u'.') ? Dots::AreContinuationAtLineEnd : Dots::AreContinuation);
        if (token.type == TokenType::EndOfInput) {
            return position == text.size();
        }
        return text.substr(position, token.lexeme.size()) == token.lexeme;
    }

    std::size_t getPosition() const { return position; }
    std::size_t getComment() const { return found; }

private:
    enum class Dots { AreContinuation, AreContinuationAtLineEnd };

    static bool isInsideBlock(const TokenView& token) {
        return token.type == TokenType::BlockCommentBody || token.type == TokenType::BlockCommentClose;
    }

    bool isAt(char16_t c) const { return position < text.size() && text[position] == c; }
    bool isAtEndOfLine() const { return position == text.size() || isLineEnd(text[position]); }

    bool pass(std::u16string_view expected) {
        const bool isThere = text.substr(position, expected.size()) == expected;
        position += isThere ? expected.size() : 0;
        return isThere;
    }

    void passWhitespace() {
        while (position < text.size() && isWhitespace(text[position])) {
            ++position;
        }
    }

    void passLineEnd() {
        position += text.substr(position, 2) == u"\r\n" ? 2 : isAt(u'\n') || isAt(u'\r') ? 1 : 0;
    }

    void passLayout(Dots dots) {
        while (position < text.size()) {
            if (isLayout(text[position])) {
                ++position;
            } else if (text.substr(position, 3) == u"..." && isContinuation(dots)) {
                position += 3;
                passWhitespace();
                if (!isAtEndOfLine()) { // the rest of the line is a comment, and may start with a comma
                    return;
                }
            } else {
                return;
            }
        }
    }

    bool isContinuation(Dots dots) const {
        const std::size_t rest = text.find_first_not_of(whitespace, position + 3);
        return dots == Dots::AreContinuation || rest == text.npos || isLineEnd(text[rest]);
    }

    std::u16string_view text;
    std::size_t position;
    std::size_t found = 0;
};

} // namespace

bool isLayout(char16_t c) {
    return isWhitespace(c) || isLineEnd(c) || c == u',' || c == u';';
}

bool isLineOfBlock(TokenType type) {
    return TokenType::BlockCommentOpen <= type && type <= TokenType::BlockCommentClose;
}

GapList::GapList(const std::u16string& text, Tokens tokens) : text(text), tokens(tokens) {
    std::uint32_t offset = 0;
    std::uint32_t index = 0;
    places.reserve(tokens.size() / 2 + 1);
    for (const ca::lexer::TokenSpan& token : tokens) {
        if (isCode(token.type)) {
            places.push_back({offset, token.length, index, token.type});
        }
        offset += token.length;
        ++index;
    }
}

void getComments(const GapList& gaps, std::size_t gap, std::vector<GapComment>& comments) {
    comments.clear();
    gaps.visitTokens(gap, [&](const TokenView& token, std::size_t offset) {
        if (token.isComment()) {
            comments.push_back(makeComment(token, offset));
        }
        return true;
    });
}

std::optional<std::size_t> matchGap(const GapList& gaps, std::size_t gap, std::u16string_view text,
                                    std::size_t begin) {
    Matcher matcher(text, begin);
    const bool hasComments = gaps.visitTokens(gap, [&](const TokenView& token, std::size_t) {
        return !token.isComment() || matcher.passComment(token);
    });
    const bool isThere = hasComments && matcher.reach(gaps.getToken(gap));
    return isThere ? std::optional(matcher.getPosition()) : std::nullopt;
}

bool findComments(const GapList& gaps, std::size_t gap, std::u16string_view text,
                  std::vector<GapComment>& comments) {
    comments.clear();
    Matcher matcher(text, 0);
    return gaps.visitTokens(gap, [&](const TokenView& token, std::size_t) {
        if (!token.isComment()) {
            return true;
        }
        if (!matcher.passComment(token)) {
            return false;
        }
        const std::size_t offset = matcher.getComment();
        comments.push_back({offset, text.substr(offset, matcher.getPosition() - offset), token.type});
        return true;
    });
}

} // namespace ombrel
