#pragma once

#include "lsp/Feature.h"

namespace ombrel::lsp {

/// textDocument/completion in an options file: the keys and words that are possible at the place. Null in any
/// other document.
Json completeOptions(const Question& question);

/// textDocument/hover in an options file: what the key at the place means, its default and its words.
Json describeOption(const Question& question);

} // namespace ombrel::lsp
