#pragma once

#include "Stages.h"

#include <iosfwd>

namespace ombrel {

/// Writes the options and issues of a configuration's JSON text, as JSON:
///
///     {"options": {"enabled": false, ..., "lineBreakBehavior": {"If": "SeparateLines", ...}, ...},
///      "issues": [{"message": "...", "line": 1, "column": 2, "file": "..."}, ...]}
///
/// The options are those that apply, with all that the text extends. The issues are those of the text and of
/// all files that it extends, in the order of file, line and column; "file" is there if it isn't the text's
/// own, and an issue about no place has no "line" and "column".
void dumpOptions(std::ostream& stream, const StageInput& input);

} // namespace ombrel
