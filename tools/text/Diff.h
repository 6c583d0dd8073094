#pragma once

#include "text/Color.h"
#include "text/Edit.h"

#include <string>
#include <string_view>

namespace ombrel {

/// What edits do to a file as a unified diff with three lines of context; empty if there are none. `bytes` is
/// the file's content, valid UTF-8. Lines end at LF here, as in every tool that applies diffs, so that a CR
/// is part of its line and the diff applies byte for byte.
std::string makeDiff(std::string_view path, std::string_view bytes, const Edits& edits, Color color);

} // namespace ombrel
