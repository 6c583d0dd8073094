#pragma once

#include "diagnostics/Problem.h"

#include <ca/SyntaxError.h>

#include <string>
#include <vector>

namespace ombrel {

/// Syntax errors as problems, in the same order, each with the code of its identifier.
Problems makeProblems(const std::vector<ca::SyntaxError>& errors);

/// Parses a text. Returns its syntax errors in the order of the text, at most 100; none if it parses.
Problems findSyntaxErrors(const std::u16string& text);

} // namespace ombrel
