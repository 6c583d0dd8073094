// What can be cut from the text without knowing what is around it, always at its longest:
//
//     1.5e3i     one number           1.*2     a number, an operator, a number: the dot belongs to the
//     operator

#include "Literals.h"

#include "Characters.h"

#include <string_view>

namespace ca::lexer {

namespace {

constexpr char16_t toLower(char16_t c) {
    return u'A' <= c && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
}

constexpr bool isHexadecimalDigit(char16_t c) {
    return isDigit(c) || (u'a' <= toLower(c) && toLower(c) <= u'f');
}

constexpr bool isBinaryDigit(char16_t c) {
    return c == u'0' || c == u'1';
}

const char16_t* skipDigits(const char16_t* text) {
    while (isDigit(*text)) {
        ++text;
    }
    return text;
}

/// The end of a width suffix such as u8 or s64, or `text` itself.
const char16_t* skipWidthSuffix(const char16_t* text) {
    if (*text != u'u' && *text != u's') {
        return text;
    }
    for (const std::u16string_view width : {u"8", u"16", u"32", u"64"}) {
        if (text[1] == width[0] && (width.size() == 1 || text[2] == width[1])) {
            return text + 1 + width.size();
        }
    }
    return text;
}

/// A number with a two-character prefix such as 0x; length 0 if no digit follows it.
template <bool isDigitOfBase(char16_t)>
Piece scanPrefixed(const char16_t* text, TokenType type) {
    const char16_t* end = text + 2;
    while (isDigitOfBase(*end)) {
        ++end;
    }
    if (end == text + 2) {
        return {type, 0};
    }
    return {type, static_cast<std::size_t>(skipWidthSuffix(end) - text)};
}

/// Whether the dot that `dot` points at, after digits, starts an operator or a continuation instead.
bool isDotOfOperator(const char16_t* dot) {
    switch (dot[1]) {
    case u'*':
    case u'/':
    case u'\\':
    case u'^':
    case u'\'':
    case u'.':
        return true;
    default:
        return false;
    }
}

const char16_t* skipExponent(const char16_t* text) {
    if (toLower(*text) != u'e' && toLower(*text) != u'd') {
        return text;
    }
    const char16_t* digits = text + 1;
    if (*digits == u'+' || *digits == u'-') {
        ++digits;
    }
    return isDigit(*digits) ? skipDigits(digits) : text;
}

Piece scanDecimal(const char16_t* text) {
    const char16_t* end = skipDigits(text);
    if (*end == u'.' && !isDotOfOperator(end)) {
        end = skipDigits(end + 1);
    }
    end = skipExponent(end);
    const bool isImaginary = toLower(*end) == u'i' || toLower(*end) == u'j';
    end += isImaginary ? 1 : 0;
    return {isImaginary ? TokenType::NumberToken30 : TokenType::NumberToken29,
            static_cast<std::size_t>(end - text)};
}

Piece scanDotOperator(const char16_t* text) {
    switch (text[1]) {
    case u'*':
        return {TokenType::MultiplyDivideOperator59, 2};
    case u'/':
        return {TokenType::MultiplyDivideOperator60, 2};
    case u'\\':
        return {TokenType::MultiplyDivideOperator61, 2};
    case u'^':
        return {TokenType::ExponentOperator62, 2};
    case u'\'':
        return {TokenType::PostfixOperator44, 2};
    default:
        return {TokenType::Dot, 1};
    }
}

/// `longer` with two characters if the second one is `second`, otherwise `shorter` with one.
Piece choose(const char16_t* text, char16_t second, TokenType longer, TokenType shorter) {
    return text[1] == second ? Piece{longer, 2} : Piece{shorter, 1};
}

} // namespace

Piece scanNumber(const char16_t* text) {
    Piece prefixed{TokenType::NumberToken29, 0};
    if (text[0] == u'0' && toLower(text[1]) == u'x') {
        prefixed = scanPrefixed<isHexadecimalDigit>(text, TokenType::NumberToken99);
    } else if (text[0] == u'0' && toLower(text[1]) == u'b') {
        prefixed = scanPrefixed<isBinaryDigit>(text, TokenType::NumberToken100);
    }
    return prefixed.length != 0 ? prefixed : scanDecimal(text);
}

Piece scanOperator(const char16_t* text) {
    switch (text[0]) {
    case u'~':
        return choose(text, u'=', TokenType::ComparisonOperator68, TokenType::PrefixOperator34);
    case u'=':
        return choose(text, u'=', TokenType::ComparisonOperator67, TokenType::Assign);
    case u'<':
        return choose(text, u'=', TokenType::ComparisonOperator70, TokenType::ComparisonOperator69);
    case u'>':
        return choose(text, u'=', TokenType::ComparisonOperator72, TokenType::ComparisonOperator71);
    case u'&':
        return choose(text, u'&', TokenType::LogicalOperator65, TokenType::LogicalOperator63);
    case u'|':
        return choose(text, u'|', TokenType::LogicalOperator66, TokenType::LogicalOperator64);
    case u'.':
        return isContinuation(text) ? Piece{TokenType::Continuation, 0} : scanDotOperator(text);
    case u'\'':
        return {TokenType::PostfixOperator43, 1};
    case u'?':
        return {TokenType::PrefixOperator45, 1};
    case u'@':
        return {TokenType::At, 1};
    case u':':
        return {TokenType::Colon, 1};
    case u'+':
        return {TokenType::PlusMinusOperator51, 1};
    case u'-':
        return {TokenType::PlusMinusOperator52, 1};
    case u'*':
        return {TokenType::MultiplyDivideOperator53, 1};
    case u'/':
        return {TokenType::MultiplyDivideOperator54, 1};
    case u'\\':
        return {TokenType::MultiplyDivideOperator55, 1};
    case u'^':
        return {TokenType::ExponentOperator56, 1};
    default:
        return {TokenType::Unrecognized, 0};
    }
}

std::size_t scanString(const char16_t* text, const char16_t* textEnd) {
    const char16_t quote = *text;
    for (const char16_t* next = text + 1; next != textEnd && !isLineEnd(*next); ++next) {
        if (*next != quote) {
            continue;
        }
        if (next[1] != quote) {
            return static_cast<std::size_t>(next + 1 - text);
        }
        ++next;
    }
    return 0;
}

} // namespace ca::lexer
