#pragma once

#include "diagnostics/Result.h"
#include "format/Options.h"
#include "format/Suppression.h"
#include "text/Edit.h"
#include "text/LineRange.h"

#include <string>
#include <vector>

namespace ombrel {

/// Reindents a text as `ca_format` does: all of it or, if there are ranges, these lines only. Ranges may be
/// in any order and overlap. Lines before a range set its level: those of other ranges as they are formatted,
/// all others as they are. Suppressed lines count as if they were formatted, but are not changed.
///
/// Each edit replaces the whitespace (spaces and tabs) at the start or at the end of one line, and nothing
/// else, whatever the formatter does. Where removing the whitespace of a blank line would join the CR before
/// it and the LF after it into one line end, the line is left as it is.
///
/// Fails if a range starts after the last line, or if the indentation would get out of hand.
Result<Edits> formatLines(const std::u16string& text, const LineOptions& options,
                          std::vector<LineRange> ranges, const Suppression& suppression);

} // namespace ombrel
