#include "format/WordGaps.h"

#include "format/TokenKinds.h"

#include <string_view>

namespace ombrel {

namespace {

using ca::lexer::TokenType;

bool isWordCharacter(char16_t c) {
    return (u'a' <= c && c <= u'z') || (u'A' <= c && c <= u'Z') || (u'0' <= c && c <= u'9') || c == u'_';
}

/// Whether two tokens with nothing between them would be read as others.
bool mayNotTouch(TokenView first, TokenView second) {
    if (first.lexeme.empty() || second.lexeme.empty()) {
        return false;
    }
    const char16_t last = first.lexeme.back();
    const char16_t next = second.lexeme.front();
    const bool isAfterWord = isWordCharacter(last);
    if (isAfterWord && (isWordCharacter(next) || (isNumber(second.type) && next == u'.'))) {
        return true;
    }
    if (isNumber(first.type) && last == u'.') { // the dot would go over to the operator
        return isWordCharacter(next) ||
               std::u16string_view(u"*/\\^'.").find(next) != std::u16string_view::npos;
    }
    if (second.type == TokenType::CharacterLiteral) { // would be a transpose
        return isAfterWord || endsOperand(first.type);
    }
    return (last == u'"' && next == u'"') || (next == u'=' && (last == u'~' || last == u'=' || last == u'<'));
}

/// `[a @b]` has two elements, and `[a@b]` is a superclass's method.
bool joinsSuperclass(const GapList& gaps, const SyntaxContext& syntax, std::size_t gap) {
    const TokenView previous = gaps.getToken(gap - 1);
    return gaps.getType(gap) == TokenType::At && !previous.lexeme.empty() &&
           isWordCharacter(previous.lexeme.back()) && !syntax.isSuperclassAt(gap) &&
           (!isName(previous.type) || syntax.getLiteral(gap));
}

/// `a .b` is the field of a value, and `a.b` a name with a dot in it.
bool joinsField(const GapList& gaps, std::size_t gap) {
    const TokenView next = gaps.getToken(gap);
    if (next.type == TokenType::Dot) {
        return isName(gaps.getType(gap - 1)) && isName(gaps.getType(gap + 1));
    }
    return gaps.getType(gap - 1) == TokenType::Dot && gap >= 2 && isName(gaps.getType(gap - 2)) &&
           isName(next.type) && gaps.getText(gap - 1).empty();
}

} // namespace

std::u16string keepApart(const GapList& gaps, const SyntaxContext& syntax, std::size_t gap,
                         std::u16string text) {
    if (gap == 0) {
        return text;
    }
    const TokenView previous = gaps.getToken(gap - 1);
    const bool isLost = text.empty() && !gaps.getText(gap).empty();
    if (isLost && (mayNotTouch(previous, gaps.getToken(gap)) || joinsSuperclass(gaps, syntax, gap) ||
                   joinsField(gaps, gap))) {
        return u" ";
    }
    const bool wouldHaveFourDots = previous.lexeme.ends_with(u'.') || previous.type == TokenType::CommandWord;
    return text.starts_with(u"...") && wouldHaveFourDots ? u" " + text : text;
}

} // namespace ombrel
