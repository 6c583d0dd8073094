#pragma once

#include "text/Stopwatch.h"

#include <string>

namespace ombrel {

/// What a caller may want to know about the formatting of one text besides its result.
struct FormatRecord {
    Stopwatch checking;      ///< the comparison of the tree engine's result with the source
    std::u16string rejected; ///< the result that failed the comparison; empty if none did
};

} // namespace ombrel
