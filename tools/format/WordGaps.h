#pragma once

#include "format/Gap.h"
#include "format/SyntaxContext.h"

#include <cstddef>
#include <string>

namespace ombrel {

/// A text for a gap with a space more, where words, quotes or dots would otherwise run together:
///
///     else c    not elsec        1 ./ x    not 1./x        s .name    not s.name
///     a 'b'     not a'b'         x. ...    not x....
///
/// Without whitespace in the source none is needed.
std::u16string keepApart(const GapList& gaps, const SyntaxContext& syntax, std::size_t gap,
                         std::u16string text);

} // namespace ombrel
