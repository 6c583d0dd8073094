#pragma once

#include "diagnostics/Problem.h"
#include "lsp/Json.h"
#include "options/OptionValue.h"

#include <vector>

namespace ombrel::lsp {

/// What the user has set in the editor, under "ombrel":
///
///     "engine": "tree"        the same as "engine" in the options
///     "options": {…}          as in an options file, without "extends", "overrides" and "root"
///     "formatOnSave": true    answer the question for edits before saving
///
/// Engine and options apply to files for which no file has options.
struct Settings {
    std::vector<Setting> options; ///< later ones win
    bool formatsOnSave = false;
    Problems problems; ///< settings that can't be used; without places
};

/// Reads an object of settings; null stands for an empty one.
Settings readSettings(const Json& json);

/// The options that a FormattingOptions of the protocol stands for: `tabSize` and `insertSpaces`. What no
/// option can have is left out.
std::vector<Setting> readFormattingOptions(const Json& json);

} // namespace ombrel::lsp
