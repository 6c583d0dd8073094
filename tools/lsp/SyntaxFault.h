#pragma once

#include "lsp/AnalysisCache.h"

#include <ca/SyntaxError.h>

#include <optional>

namespace ombrel::lsp {

/// The text that a syntax error is about. Empty at the end of a line.
TextSpan findSpan(const Analysis& analysis, const ca::SyntaxError& error);

/// The other half of what an error is about: the `if` that no `end` closes, the bracket that is still open.
/// Nothing if the error has none.
std::optional<TextSpan> findPartner(const Analysis& analysis, const ca::SyntaxError& error);

} // namespace ombrel::lsp
