#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace ombrel {

/// Columns that a line may be indented by.
constexpr std::uint32_t maximalIndentation = 100'000;

/// Characters of indentation that a whole text may get: this many, and eight for each character of the text.
constexpr std::uint64_t maximalWhitespace = std::uint64_t{64} << 20;

/// The line at which the indentation of a text gets out of hand.
struct RunawayIndentation {
    std::uint32_t line;            ///< from 1
    std::uint32_t width;           ///< columns of this line
    std::uint64_t whitespaceCount; ///< characters of indentation up to this line, itself included
};

/// Stops a formatter that would write absurd amounts of indentation. The formatter accepts every text, and
/// code with errors can make it do that. Repeated, these lines move right by one level each time:
///
///     if a
///     case end       the `end` takes back the level of the `case`, but not that of the `if`
///
/// and an `end` that closes an open bracket can make the width wrap around to 4294967292.
class IndentationGuard {
public:
    /// `textLength` is that of the whole text, in 16-bit characters.
    explicit IndentationGuard(std::size_t textLength)
        : whitespaceLimit(maximalWhitespace + 8 * std::uint64_t{textLength}) {}

    /// Counts a line before its indentation is written: `width` columns in `characterCount` characters. False
    /// if that is too much.
    bool allows(std::uint32_t line, std::uint32_t width, std::uint32_t characterCount) {
        whitespaceCount += characterCount;
        if (width <= maximalIndentation && whitespaceCount <= whitespaceLimit) {
            return true;
        }
        runaway = RunawayIndentation{line, width, whitespaceCount};
        return false;
    }

    /// The line that was too much, if there is one.
    const std::optional<RunawayIndentation>& getRunaway() const { return runaway; }

private:
    std::uint64_t whitespaceLimit;
    std::uint64_t whitespaceCount = 0;
    std::optional<RunawayIndentation> runaway;
};

} // namespace ombrel
