#pragma once

#include "diagnostics/Message.h"
#include "format/Options.h"
#include "format/Suppression.h"
#include "text/LineRange.h"

#include <string>
#include <variant>
#include <vector>

namespace ombrel {

/// Reindents a text as `ca_format` does, all of it or, if there are ranges, these lines only. Ranges are
/// merged where they overlap and formatted in ascending order, each on the result of the one before, since
/// earlier lines set the level of later ones. Suppressed lines count as if they were formatted, and stay as
/// they are.
///
/// Gives a problem if a range begins behind the last line, if the indentation would get out of hand, or if
/// the result isn't the same text but for blanks at the edges of lines.
std::variant<std::u16string, Problem> formatLines(const std::u16string& text, const LineOptions& options,
                                                  std::vector<LineRange> ranges,
                                                  const Suppression& suppression);

} // namespace ombrel
