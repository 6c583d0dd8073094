#pragma once

#include "lsp/Feature.h"

namespace ombrel::lsp {

/// The characters after which the editor asks: the line end first, then the last letters of the keywords that
/// close or divide a block.
Json describeTypeTriggers();

/// textDocument/onTypeFormatting: indents the line that was finished and the new one after a line end, and
/// the line of an `end`, `else`, `case` and so on once that is complete. Text that is being typed seldom
/// parses, so this is always the line engine's work; it indents as the options of the tree engine say where
/// those are in force. Null where they ask for something that the line engine can't do.
Json formatOnType(const Question& question);

} // namespace ombrel::lsp
