#pragma once

#include "Arguments.h"
#include "ExitStatus.h"
#include "FileSystem.h"

#include <iosfwd>

namespace ombrel {

/// The standard streams, and what is known of them.
struct Console {
    std::istream& in;
    std::ostream& out; ///< results
    std::ostream& err; ///< messages
    bool isOutTerminal = false;
    bool isErrTerminal = false;
    bool isColorUnwanted = false; ///< the user's NO_COLOR
};

/// Formats everything that the arguments name, or checks its syntax. A problem with one file doesn't keep the
/// others from their turn; a failure to write results ends the run.
ExitStatus run(const Arguments& arguments, Console& console, FileSystem& files);

} // namespace ombrel
