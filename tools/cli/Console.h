#pragma once

#include "cli/Arguments.h"
#include "diagnostics/Message.h"

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
    bool isInTerminal = false;
    bool isOutOnErrTerminal = false; ///< results and messages go to one terminal

    Color getOutColor(ColorChoice choice) const { return getColor(choice, isOutTerminal); }
    Color getErrColor(ColorChoice choice) const { return getColor(choice, isErrTerminal); }

private:
    Color getColor(ColorChoice choice, bool isTerminal) const {
        const bool automatic = isTerminal && !isColorUnwanted;
        return choice == ColorChoice::Always || (choice == ColorChoice::Auto && automatic) ? Color::On
                                                                                           : Color::Off;
    }
};

} // namespace ombrel
