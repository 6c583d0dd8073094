#pragma once

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

} // namespace ombrel
