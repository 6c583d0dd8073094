#pragma once

#include <ca/formatting/LegacyFormatter.h>
#include <ca/lexer/Token.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace ombrel {

/// Columns that a line may be indented by.
constexpr std::uint32_t maximalIndentation = 100'000;

/// Blanks that indentation may come to in a whole text: this many, and eight for each character of the text.
constexpr std::uint64_t maximalBlankCount = std::uint64_t{64} << 20;

/// The line at which the indentation of a text gets out of hand.
struct RunawayIndentation {
    std::uint32_t line;       ///< from 1
    std::uint32_t width;      ///< columns of this line
    std::uint64_t blankCount; ///< characters of indentation up to this line, itself included
};

/// Finds out whether reindenting would need absurd amounts of blanks: a line of more than maximalIndentation
/// columns, or more blanks in all than maximalBlankCount allows. The formatter takes every text, and damaged
/// code can make it do that. Repeated, these lines move right by one level each time:
///
///     if a
///     case end       the `end` takes back the level of the `case`, and that of the `if` stays
///
/// and an `end` that meets an open bracket can make the width wrap around to 4294967292.
///
/// Takes time and memory in proportion to the tokens, whatever they are. Empty for a text that is harmless.
std::optional<RunawayIndentation> findRunawayIndentation(const std::vector<ca::lexer::Token>& tokens,
                                                         const ca::formatting::legacy::Settings& settings);

} // namespace ombrel
