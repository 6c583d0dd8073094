#pragma once

#include "diagnostics/Message.h"

#include <ca/SyntaxError.h>

#include <string>
#include <vector>

namespace ombrel {

/// Syntax errors in the form in which they are printed, in the same order, each with the status Unparsable.
std::vector<Problem> describe(const std::vector<ca::SyntaxError>& errors);

/// Parses a text. Returns its syntax errors in the order of the text, at most 100; none if it parses.
std::vector<Problem> findSyntaxErrors(const std::u16string& text);

} // namespace ombrel
