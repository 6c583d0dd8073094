#pragma once

#include <string>

namespace ombrel {

/// Which changes a run is about.
struct ChangeOptions {
    std::string since;       ///< those of the work tree since this revision; `REV...`: since HEAD left it
    bool isStaged = false;   ///< those of the index since HEAD
    bool takesWhole = false; ///< whole files that have a change, not their changed lines

    bool isAsked() const { return isStaged || !since.empty(); }
};

} // namespace ombrel
