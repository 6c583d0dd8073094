#pragma once

#include "options/OptionsRequest.h"

#include <cstdint>
#include <vector>

namespace ombrel {

/// Tabs that make a level of this many columns: as many as fit, but at least one if there is anything to
/// indent by.
std::uint32_t countTabs(double columns, double tabSize);

/// Makes --indent-size and --use-tabs apply to the tree engine, which counts a level in characters: columns
/// of spaces, or tabs. All settings for a file have to go through it in ascending order of precedence.
class IndentationFlags {
public:
    void note(const Setting& setting);

    /// What a setting of the command line, which has been noted, means for options of the tree engine.
    std::vector<Setting> translate(const CommandLineSetting& command);

private:
    double indentSize = 4; ///< columns
    double tabSize = 4;    ///< columns
    bool usesTabs = false; ///< the tree engine
    bool isAsked = false;  ///< one of the flags was given, and nothing later sets the width itself
};

} // namespace ombrel
