#pragma once

#include "support/GoldenFile.h"

#include <ca/formatting/LegacyFormatter.h>
#include <ca/lexer/Token.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// The arguments of `ca_format` after the text, in their order.
struct LineOptions {
    std::uint32_t firstLine = 1;
    std::uint32_t lastLine = UINT32_MAX;
    bool useSpaces = true;
    std::uint32_t tabSize = 4;
    std::u16string functionIndentStyle = u"AllFunctionIndent";
    std::uint32_t indentSize = 4;
    std::u16string blankLineStyle = u"Trim";
};

/// Reads `lines`, `useSpaces`, `tabSize`, `indentSize`, `functionIndentStyle` (Classic, Mixed or All) and
/// `blankLineStyle`. Throws std::runtime_error for any other option but `formatter`.
LineOptions readLineOptions(const GoldenOptions& options);

/// The same as the formatter's own record.
ca::formatting::legacy::Settings makeSettings(const LineOptions& options);

/// The text of the array that `ca_format` returns.
std::u16string formatLines(const std::u16string& text, const LineOptions& options);

/// The result of the line engine of the tools, empty if it refuses the text because of its indentation.
std::optional<std::u16string> formatWithEngine(const std::u16string& text, const LineOptions& options);

/// What LegacyFormatter makes of the tokens with the same options.
std::vector<ca::lexer::Token> indentTokens(const std::vector<ca::lexer::Token>& tokens,
                                           const LineOptions& options);

/// Names the first line that differs in more than the whitespace at its edges, or at all if it is outside of
/// the range; empty if there is none.
std::string findForeignChange(const std::u16string& before, const std::u16string& after,
                              const LineOptions& options);
