#pragma once

#include "diagnostics/Problem.h"

#include <algorithm>

namespace ombrel {

/// What the program exits with. If several files end differently, the largest wins.
enum class ExitStatus {
    Done = 0,
    WouldChange = 1, ///< --check or --diff found a file that is not formatted
    Usage = 2,       ///< wrong options, unreadable input
    Refused = 3,     ///< the input is not UTF-8, too large, or would be indented without limit
    Unparsable = 4,  ///< the input doesn't parse or is nested too deeply, and it has to parse
    Unsafe = 5,      ///< the result failed the safety check and was discarded
    WriteFailed = 6,
};

constexpr ExitStatus getWorse(ExitStatus a, ExitStatus b) {
    return std::max(a, b);
}

/// What a run ends with that had this problem and no worse one.
ExitStatus getExitStatus(const Problem& problem);

} // namespace ombrel
