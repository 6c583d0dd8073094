#pragma once

#include "lsp/Feature.h"

namespace ombrel::lsp {

/// The SemanticTokensLegend: the names of the types and modifiers that the numbers stand for.
Json describeTokenLegend();

/// textDocument/semanticTokens/full, …/range and …/full/delta. Of a text that doesn't parse, names have no
/// tokens.
Json findTokens(const Question& question);
Json findTokensInRange(const Question& question);
Json findTokenChanges(const Question& question);

} // namespace ombrel::lsp
