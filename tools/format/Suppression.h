#pragma once

#include "diagnostics/Problem.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ombrel {

/// Whole lines that formatting leaves alone: from the line of an `off` comment to that of its `on` comment,
/// with their line ends, or to the end of the text. Offsets are in 16-bit characters.
struct SuppressedRegion {
    std::size_t begin;      ///< offset of the first line's first character
    std::size_t end;        ///< offset after the last line
    std::size_t innerBegin; ///< offset after the line of the `off` comment
    std::size_t innerEnd;   ///< offset of the line of the `on` comment
    std::uint32_t line;     ///< of the `off` comment, from 1
    std::uint32_t column;   ///< likewise
};

/// What a text's own comments say about its formatting. Each is on a line of its own, with any whitespace
/// round its words; words in other comments, strings and commands mean nothing:
///
///     % ombrel-format off
///     table = [1   0
///              0  12];
///     % ombrel-format on
///
/// An `off` before all code that no `on` follows turns formatting off for the whole file. An `off next` is
/// for the lines of one statement, the next that starts in its block, which may be a block itself. Inside a
/// statement, in a matrix or after a continuation, it is for the rest of it. Comments and blank lines before
/// the statement belong to it.
struct Suppression {
    bool isWholeFile = false;
    std::vector<SuppressedRegion> regions; ///< in ascending order, none of which overlaps another
    Problems warnings;                     ///< comments without effect, an `off` without `on`; in order
};

/// Reads the comments of a text. Costs next to nothing for a text that has none.
Suppression findSuppression(const std::u16string& text);

} // namespace ombrel
