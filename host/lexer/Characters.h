#pragma once

#include <array>
#include <cstddef>
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

constexpr std::array<bool, 128> makeNameTable() {
    std::array<bool, 128> table{};
    for (std::size_t c = 0; c < table.size(); ++c) {
        table[c] =
            classTable[c] == CharacterClass::Letter || classTable[c] == CharacterClass::Digit || c == u'_';
    }
    return table;
}

inline constexpr std::array<bool, 128> nameTable = makeNameTable();

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
    return c < 128 && detail::nameTable[c];
}

} // namespace ca::lexer
