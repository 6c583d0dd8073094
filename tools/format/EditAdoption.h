#pragma once

#include "diagnostics/Result.h"
#include "text/Edit.h"

#include <string>
#include <vector>

namespace ombrel {

/// Makes edits of a text out of ones that were made for another version of it, and are in ascending order.
/// Whitespace at the edges of lines may change in any text. If there are other edits, the text has to parse,
/// and they have to keep its program and to change nothing but its layout; fails if they don't.
Result<Edits> adoptEdits(const std::u16string& text, std::vector<Edit> edits);

} // namespace ombrel
