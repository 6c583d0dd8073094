#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace ombrel {

/// An option that decided something, by its full name, and its value as JSON:
/// "formatting.lineBreakBehavior.Expressions.Logical", "\"SeparateLines\"".
struct DecidingOption {
    std::string name;
    std::string value;
};

/// What the tree formatter makes of one gap, and why.
struct GapDecision {
    std::string gapClass; ///< "BinaryOperationWhitespace"
    std::string
        construct; ///< whose gap it is, as options call it: "Logical"; empty if options have no name for it
    std::string level;     ///< the name of its level of indentation
    std::uint32_t depth;   ///< levels that add indentation, from the outermost to this one
    std::string decision;  ///< "Preserve", "LineBreak", "NoLineBreak"
    bool isCandidate;      ///< a line break may be chosen here
    std::u16string before; ///< its text in the source
    std::u16string after;  ///< its text in the formatter's result
    std::string reason;    ///< a sentence
    std::vector<DecidingOption> options;
};

/// One row of a dump: something that a stage knows of, and the part of the source that it is about.
struct Row {
    std::size_t begin = 0;   ///< offset in 16-bit characters
    std::size_t end = 0;     ///< offset after its last character; `begin` if the source has nothing for it
    std::uint32_t depth = 0; ///< how many other rows it is in
    std::string label;       ///< what it is
    std::string detail;      ///< more about it, on one line; may be empty
    std::optional<GapDecision> gap; ///< of the stage of decisions
};

/// Receives the rows of a dump one by one, in the order of the dump.
using RowVisitor = std::function<void(const Row&)>;

} // namespace ombrel
