#pragma once

#include "format/GapRules.h"
#include "text/LineRange.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <vector>

namespace ombrel {

/// Takes back what a formatter did to the units of a text in which the program has come out as another one,
/// step by step:
///
/// 1. nothing in the unit and next to it is broken or joined: whitespace becomes one space
/// 2. the gaps in the unit stay as they are in the source
/// 3. so do the gaps before and after it
/// 4. and those of the units before and after it
class Escalation {
public:
    /// Keeps both by reference.
    Escalation(const GapRuleInput& input, GapChoices& choices) : input(input), choices(choices) {}

    /// Goes one step further in the unit of each of these places: offsets in the source, ascending. False if
    /// no unit has a step left.
    bool raise(const std::vector<std::size_t>& places);

    /// The lines of the units that have kept the text of their gaps, ascending. Units next to them count too
    /// if they would have changed.
    std::vector<LineRange> getKeptLines() const;

private:
    bool raiseUnit(std::size_t unit);
    void simplify(std::size_t gap);
    void keepInside(std::size_t unit);
    void keepEdges(std::size_t unit);

    const GapRuleInput& input;
    GapChoices& choices;
    std::map<std::size_t, int> steps; ///< of the units that have been raised
    std::set<std::size_t> kept;       ///< the units whose gaps stay as they are in the source
};

} // namespace ombrel
