#pragma once

#include "files/Shard.h"

#include <string>
#include <vector>

namespace ombrel {

/// Which files a run formats, besides the paths that are named.
struct SearchOptions {
    std::string pathList;            ///< an input with more paths; empty: there is none
    bool isPathListNulEnded = false; ///< its paths end in NUL instead of line ends
    std::vector<std::string>
        patterns; ///< what to leave out, as in ignore files; after a `!`, what to include
    bool honorsGitignore = true;
    bool forcesExclusion = false; ///< paths that are named can be left out too
    std::string stdinName;        ///< what standard input is called; empty: it has no name
    bool arePathsNamed = true;    ///< by the user, who has to know if one of them is left out
    bool allowsNoFiles = false;
    Shard shard;            ///< of the files that are found, the run takes those of this shard
    bool listsOnly = false; ///< say what would be taken and why, and stop
};

} // namespace ombrel
