#pragma once

#include "diagnostics/Code.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace ombrel {

/// Something that a user should know about an input, an options file or the command line.
struct Problem {
    /// The severity is the usual one of the code. Line and column as below.
    Problem(Code code, std::string text, std::uint32_t line = 0, std::uint32_t column = 0)
        : code(code), severity(getInfo(code).severity), text(std::move(text)), line(line), column(column) {}

    Code code;
    Severity severity;
    std::string text;     ///< UTF-8, one line, no full stop
    std::uint32_t line;   ///< from 1; 0 if the problem has no place in the text
    std::uint32_t column; ///< 16-bit characters, from 1; 0 if only the line is known
    std::uint32_t lastLine = 0; ///< of a problem about a run of lines that starts at `line`; 0 for all others

    bool isError() const { return severity == Severity::Error; }
};

using Problems = std::vector<Problem>;

} // namespace ombrel
