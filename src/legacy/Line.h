#pragma once

#include "ca/formatting/LegacyFormatter.h"
#include "tokens/TokenContract.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ca::formatting::legacy {

/// The tabs and spaces that a text starts with.
std::u16string_view getLeadingWhitespace(std::u16string_view text);

/// Columns of a run of whitespace.
std::uint32_t measureWhitespace(std::u16string_view text, const Settings& settings);

/// Replaces the first `length` characters of `text` by whitespace of `width` columns.
void replaceWhitespace(std::u16string& text, std::size_t length, std::uint32_t width,
                       const Settings& settings);

} // namespace ca::formatting::legacy
