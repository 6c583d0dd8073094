#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace ombrel {

/// Whitespace within a line: spaces and tabs.
constexpr bool isWhitespace(char16_t c) {
    return c == u' ' || c == u'\t';
}

/// How many characters of whitespace a text starts with.
constexpr std::size_t countLeadingWhitespace(std::u16string_view text) {
    const auto first = std::find_if_not(text.begin(), text.end(), isWhitespace);
    return static_cast<std::size_t>(first - text.begin());
}

/// The text without the whitespace that it ends in.
constexpr std::u16string_view removeTrailingWhitespace(std::u16string_view text) {
    while (!text.empty() && isWhitespace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

} // namespace ombrel
