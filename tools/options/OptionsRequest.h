#pragma once

#include "options/OptionValue.h"

#include <string>
#include <vector>

namespace ombrel {

/// One option as the command line has it.
struct CommandLineSetting {
    Setting setting;
    std::string flag;              ///< that gave it: "--indent-size", "--set"
    bool isForBothEngines = false; ///< the tree engine's indentation goes by it too
};

/// Where options come from, by the command line.
struct OptionsRequest {
    std::string file;                         ///< of --config; empty: the nearest to each source file
    bool ignoresFiles = false;                ///< --no-config: neither options files nor .editorconfig
    std::vector<CommandLineSetting> settings; ///< later ones win
    std::vector<Setting> fallbacks = {};      ///< of an editor: for source files that no file has options for
};

} // namespace ombrel
