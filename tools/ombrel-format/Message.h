#pragma once

#include "ExitStatus.h"

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

namespace ombrel {

enum class Color { Off, On };

/// Something that kept one input from being formatted.
struct Problem {
    ExitStatus status;
    std::string text;         ///< UTF-8, one line, no full stop
    std::uint32_t line = 0;   ///< from 1; 0 if the problem has no place in the text
    std::uint32_t column = 0; ///< 16-bit characters, from 1
};

/// Writes a problem with what a person needs to find it. `text` is the input, or as much of it as could be
/// read; it may be empty:
///
///     sum.omb:2:5: error: this line would be indented by 4294967292 columns
///       x = 1;
///           ^
///
/// Control characters are shown as a question mark, and of a long line only the surroundings are shown.
/// A name as it can be shown on one line: what isn't UTF-8 and control characters, which could forge
/// messages, are replaced.
std::string getPrintableName(std::string_view bytes);

void printProblem(std::ostream& stream, std::string_view path, const Problem& problem,
                  std::u16string_view text, Color color);

/// Writes an error that belongs to the command line and to no input.
void printUsageError(std::ostream& stream, std::string_view program, std::string_view text, Color color);

} // namespace ombrel
