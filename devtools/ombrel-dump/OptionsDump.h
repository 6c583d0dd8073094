#pragma once

#include "Stages.h"

#include <iosfwd>

namespace ombrel {

/// Writes what the JSON text of a configuration comes to, as JSON:
///
///     {"options": {"enabled": false, ..., "lineBreakBehavior": {"If": "SeparateLines", ...}, ...},
///      "issues": [{"message": "...", "line": 1, "column": 2, "file": "..."}, ...]}
///
/// The options are those in force, after all that the text extends. The issues are those of the text and of
/// all files underneath, in the order of file, line and column; "file" is there if it isn't the text's own,
/// and an issue about no place has no "line" and "column".
void dumpOptions(std::ostream& stream, const StageInput& input);

} // namespace ombrel
