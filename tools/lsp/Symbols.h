#pragma once

#include "lsp/Feature.h"

namespace ombrel::lsp {

/// textDocument/documentSymbol: functions, classes and their members, from the syntax tree. Of a text that
/// doesn't parse, the functions and classes that its tokens show. A tree, or a list for clients that know no
/// trees.
Json findSymbols(const Question& question);

} // namespace ombrel::lsp
