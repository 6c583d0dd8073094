#pragma once

#include "text/Color.h"

#include <iosfwd>
#include <string_view>

namespace ombrel {

/// Writes what turns `before` into `after` as a unified diff with three lines of context; nothing if they are
/// equal. Both are the bytes of a file. Lines end at LF here, as in every tool that applies diffs, so that
/// a CR is part of its line and the diff applies byte for byte.
void printDiff(std::ostream& stream, std::string_view path, std::string_view before, std::string_view after,
               Color color);

} // namespace ombrel
