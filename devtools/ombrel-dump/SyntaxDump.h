#pragma once

#include <iosfwd>
#include <string>

namespace ombrel {

/// Writes the syntax tree of a text as JSON: nested objects with `kind`, `kindName`, `position`, `line`,
/// `column` and the node's fields by their names. Needs no more of the call stack for a deep tree than for a
/// flat one.
///
/// Throws ca::SyntaxErrorException before anything is written if the text doesn't parse.
void dumpSyntax(std::ostream& stream, const std::u16string& text);

} // namespace ombrel
