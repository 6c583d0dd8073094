#pragma once

#include "diagnostics/Result.h"
#include "text/LineRange.h"

#include <string_view>
#include <vector>

namespace ombrel {

/// The same lines in ranges that ascend and neither overlap nor touch.
std::vector<LineRange> mergeRanges(std::vector<LineRange> ranges);

/// Fails if one of the ranges starts after the last line of the text. A text that ends in a line end has an
/// empty line after it: a range may start with that line, but a message doesn't count it.
Result<void> checkRanges(std::u16string_view text, const std::vector<LineRange>& ranges);

} // namespace ombrel
