#pragma once

#include "format/ProgramMarks.h"

#include <cstddef>
#include <string>
#include <vector>

namespace ombrel {

/// A difference at a mark of the text before, and what it is about: one or two nodes, or a token.
struct Difference {
    enum class Kind { Token, NodeTaken, NodeAdded, NodeTurned, NodeChanged, Unparsable };

    Kind kind;
    std::size_t mark;
    const SyntaxNode* node = nullptr;  ///< of NodeTaken and NodeAdded, what is taken or added
    const SyntaxNode* other = nullptr; ///< what it becomes, is taken out of, or is added to
    std::size_t markAfter = 0;         ///< of the token that is there now
};

/// What a formatter would do to make the difference: "turn 'b' into the end of the text". `difference.mark`
/// is one of `before`; the errors are those of the text after, at least one if the difference is that it
/// doesn't parse.
std::string describe(const Difference& difference, const Marks& before, const Marks& after,
                     const std::vector<ca::SyntaxError>& errors);

} // namespace ombrel
