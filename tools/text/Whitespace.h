#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace ombrel {

/// Whitespace within a line: spaces and tabs.
inline constexpr std::u16string_view whitespace = u" \t";

constexpr bool isWhitespace(char16_t c) {
    return c == u' ' || c == u'\t';
}

constexpr bool isLineEnd(char16_t c) {
    return c == u'\n' || c == u'\r';
}

/// How many characters of whitespace a text starts with.
constexpr std::size_t countLeadingWhitespace(std::u16string_view text) {
    const auto first = std::find_if_not(text.begin(), text.end(), isWhitespace);
    return static_cast<std::size_t>(first - text.begin());
}

/// The text without the whitespace that it starts with.
constexpr std::u16string_view removeLeadingWhitespace(std::u16string_view text) {
    return text.substr(countLeadingWhitespace(text));
}

/// The text without the whitespace that it ends in.
constexpr std::u16string_view removeTrailingWhitespace(std::u16string_view text) {
    while (!text.empty() && isWhitespace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

/// The text without whitespace at both ends.
constexpr std::u16string_view trim(std::u16string_view text) {
    return removeTrailingWhitespace(removeLeadingWhitespace(text));
}

/// The text without the line ends that it ends in.
constexpr std::u16string_view removeLineEnds(std::u16string_view text) {
    while (!text.empty() && isLineEnd(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

} // namespace ombrel
