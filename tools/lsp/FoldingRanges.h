#pragma once

#include "lsp/Feature.h"

namespace ombrel::lsp {

/// textDocument/foldingRange: blocks and their branches, comments, lists of imports, brackets over several
/// lines, and what comments suppress. The line that closes something stays visible.
Json findFoldingRanges(const Question& question);

} // namespace ombrel::lsp
