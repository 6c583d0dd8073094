#pragma once

#include "format/GapChoices.h"
#include "format/SyntaxContext.h"

#include <functional>
#include <string>

namespace ombrel {

/// What the rules for gaps need to know about one text.
struct GapRuleInput {
    const GapList& gaps;
    const SyntaxContext& syntax;
    bool isTrimming;  ///< whether the formatter takes whitespace out
    bool isIndenting; ///< whether it indents lines

    /// The gaps as the formatter writes them when it breaks and joins no lines. Called when it is needed for
    /// the first time; null if there is no such text.
    std::function<const GapAlignment*()> getUnbroken;
};

/// Where the formatter's text for a gap would make another program of the text, chooses one for it that
/// keeps the meaning and as much of the layout as it can:
///
///     x = [1; 2];      the formatter writes [1 2 ], and the gap gets `;` back
///     else c           the formatter writes elsec, and the gap gets its space back
///
/// Each rule has to decide in the same way when the result is formatted again. So it looks at the code tokens
/// next to a gap, at the syntax tree, and at what the result keeps of the source: separators, line ends,
/// comments and continuations. Of the source's whitespace it asks only whether there is some, where a
/// repaired gap has some too, and without indentation where a line starts, which stays.
///
/// The rules know what the formatter is known to do. Whether the program stays the same is not theirs to say.
void repairGaps(const GapRuleInput& input, GapChoices& choices);

/// The gap without new line breaks. If it is nothing but whitespace, at most a space when trimming; otherwise
/// as the formatter writes it when it neither breaks nor joins lines if that has the separators of the
/// source, and else as it is in the source, without the whitespace that trimming takes out.
std::u16string getConservativeText(const GapRuleInput& input, std::size_t gap);

} // namespace ombrel
