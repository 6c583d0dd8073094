#pragma once

#include "lsp/Feature.h"

namespace ombrel::lsp {

/// textDocument/codeAction: quick fixes for the problems in a range. Only those that are certain: a text that
/// is changed so has fewer problems.
///
/// - of a source: what an error says was probably meant, and the missing `end`;
/// - of an options file: the key or word that is meant.
Json findActions(const Question& question);

} // namespace ombrel::lsp
