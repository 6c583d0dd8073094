#pragma once

#include <algorithm>

namespace ombrel {

/// What the program exits with. If several files end differently, the largest wins.
enum class ExitStatus {
    Done = 0,
    WouldChange = 1, ///< --check or --diff found a file that is not formatted
    Usage = 2,       ///< wrong options, unreadable input
    Refused = 3,     ///< the input is not UTF-8, too large or too deep
    Unparsable = 4,  ///< the input doesn't parse, and that was asked for or the tree engine needs it
    Unsafe = 5,      ///< the result failed the safety check and was thrown away
    WriteFailed = 6,
};

constexpr ExitStatus getWorse(ExitStatus a, ExitStatus b) {
    return std::max(a, b);
}

} // namespace ombrel
