#pragma once

#include <array>
#include <cstdint>

namespace ca::lexer {

/// What kind of token a character can start.
enum class CharacterClass : std::uint8_t {
    Other, ///< starts none: controls, all that isn't ASCII, and a few signs
    Blank,
    LineEnd,
    Letter,
    Digit,
    SingleQuote,
    DoubleQuote,
    Percent,
    Dot,
    Separator, ///< comma, semicolon
    Bracket,
    Operator,
};

namespace detail {

constexpr std::array<CharacterClass, 128> makeClassTable() {
    std::array<CharacterClass, 128> table{};
    const auto set = [&table](const char* characters, CharacterClass value) {
        for (; *characters != '\0'; ++characters) {
            table[static_cast<unsigned char>(*characters)] = value;
        }
    };
    set(" \t", CharacterClass::Blank);
    set("\n\r", CharacterClass::LineEnd);
    set("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ", CharacterClass::Letter);
    set("0123456789", CharacterClass::Digit);
    set("'", CharacterClass::SingleQuote);
    set("\"", CharacterClass::DoubleQuote);
    set("%", CharacterClass::Percent);
    set(".", CharacterClass::Dot);
    set(",;", CharacterClass::Separator);
    set("()[]{}", CharacterClass::Bracket);
    set("~?@=:+-*/\\^&|<>", CharacterClass::Operator);
    return table;
}

inline constexpr std::array<CharacterClass, 128> classTable = makeClassTable();

} // namespace detail

constexpr CharacterClass getClass(char16_t c) {
    return c < 128 ? detail::classTable[c] : CharacterClass::Other;
}

constexpr bool isBlank(char16_t c) {
    return c == u' ' || c == u'\t';
}

constexpr bool isLineEnd(char16_t c) {
    return c == u'\n' || c == u'\r';
}

constexpr bool isSeparator(char16_t c) {
    return c == u',' || c == u';';
}

constexpr bool isDigit(char16_t c) {
    return u'0' <= c && c <= u'9';
}

constexpr bool isLetter(char16_t c) {
    return getClass(c) == CharacterClass::Letter;
}

constexpr bool isNameCharacter(char16_t c) {
    return isLetter(c) || isDigit(c) || c == u'_';
}

} // namespace ca::lexer
