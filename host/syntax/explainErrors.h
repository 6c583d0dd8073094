#pragma once

#include "ca/SyntaxError.h"

#include <string>
#include <vector>

namespace ca::syntax {

/// All syntax errors of a text in its order, at most 100; empty if it parses. One mistake is one error as far
/// as it can be told what was meant, and the error then says that.
///
/// `errors` are what the parser found in the text. The time it takes has a limit that doesn't depend on the
/// text.
std::vector<SyntaxError> explainErrors(const std::u16string& text, std::vector<SyntaxError> errors);

} // namespace ca::syntax
