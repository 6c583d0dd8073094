#pragma once

#include "stages/Row.h"

#include <ca/formatting/TreeFormat.h>

#include <string>

namespace ombrel {

/// The tokens of a text, a row for each.
void visitTokenRows(const ca::formatting::ParsedSource& source, const RowVisitor& visit);

/// The syntax tree of a text that parses: a row for each node, before the rows of its children. A node
/// reaches from its first character to the end of its last token, brackets and `end` included. Takes linear
/// time, and no more of the call stack for a deep tree than for a flat one.
void visitSyntaxRows(const std::u16string& text, const ca::formatting::ParsedSource& source,
                     const RowVisitor& visit);

} // namespace ombrel
