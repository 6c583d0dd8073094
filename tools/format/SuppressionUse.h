#pragma once

#include "diagnostics/Problem.h"
#include "format/Options.h"
#include "format/Suppression.h"

#include <string>

namespace ombrel {

/// Warns of the regions in which formatting would change nothing; their comments' own lines don't count.
/// Formats the whole text once more, as if it had no such comments, unless it has none. A comment for the
/// whole file gets no warning, and none is given if the text can't be formatted.
Problems findUnneededSuppression(const std::u16string& text, const FileOptions& options,
                                 const Suppression& suppression);

} // namespace ombrel
