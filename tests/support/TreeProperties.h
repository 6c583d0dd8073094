#pragma once

#include "support/TestConfig.h"

#include <string>

/// The characters that no run of the formatter may touch, which leaves out the dots of `...` and with them
/// all others.
std::u16string getCode(std::u16string text);

/// Names the first of these that doesn't hold for a text that parses; empty if all do:
///
/// - The claims of its syntax tree hold on its tokens.
/// - Its format tree keeps the invariants, and has one leaf for each claim.
/// - With nothing switched on the formatted text is the text, line ends aside: those in a gap that is
///   rendered from its items become LF, those in a gap between words or inside a list stay.
/// - With indentation alone each line keeps all but its leading whitespace, and there are as many lines.
/// - Formatted statement by statement it comes out as when it is formatted as a whole.
/// - Under `options` nothing but whitespace, line ends, commas, semicolons and continuations comes or goes.
///
/// Throws ca::SyntaxErrorException if the text doesn't parse.
std::string findTreeFault(const std::u16string& text, const TestOptions& options);
