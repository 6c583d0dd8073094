#pragma once

#include "diagnostics/Problem.h"
#include "text/Edit.h"

#include <ca/formatting/TreeFormat.h>
#include <ca/lexer/TokenSpan.h>

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ombrel {

/// A text and what the parser makes of it. Keeps the text by reference, so it accepts no temporary one.
class ParsedText {
public:
    explicit ParsedText(const std::u16string& text)
        : text(text), parsed(ca::formatting::parseProgram(text)) {}
    explicit ParsedText(std::u16string&&) = delete;

    /// All tokens. Valid as long as this object. The text has to parse.
    std::span<const ca::lexer::TokenSpan> getTokens() const { return *parsed.analysis->getTokenSpans(); }

    const std::u16string& text;
    const ca::formatting::ParsedSource parsed; ///< without tokens
};

/// Finds out whether a formatted text is still the same program: the same tokens but for separators, with the
/// same comments between them, and the same syntax tree. Whitespace and line ends at the edges of a comment
/// don't count, nor do separators that the tree knows nothing of, such as a comma between two statements. A
/// semicolon that keeps a result from being printed is part of the tree, and so are the rows of a matrix.
///
/// Gives the first difference, placed in `before`, which has to parse:
///
///     x = [1; 2];          x = [1 2];        1:9: the formatter would put this number literal into the
///                                                 matrix row before it
///
/// Takes time in proportion to the texts but for a logarithm, and no more of the call stack for a deep tree
/// than for a flat one.
std::optional<Problem> checkSameProgram(const ParsedText& before, const std::u16string& after);

/// All that is different in a text that edits have made.
struct ProgramDifferences {
    std::vector<std::size_t> places; ///< offsets in the text before, ascending; none if nothing differs
    std::optional<Problem> first;    ///< as checkSameProgram gives it
};

/// The same check, for `after` as the edits make it of `before`. Since it is known where each token has to
/// be, all differences are found, whatever the ones before them do to the rest. If the text doesn't parse,
/// these are its syntax errors, at most 100, and the tokens that differ.
ProgramDifferences findDifferences(const ParsedText& before, const std::u16string& after, const Edits& edits);

} // namespace ombrel
