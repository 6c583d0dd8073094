#pragma once

#include "format/ProgramDifference.h"
#include "text/Edit.h"

#include <cstddef>
#include <vector>

namespace ombrel {

/// Which mark of the text before each mark of the text after is. Where nothing is known about the edits that
/// made one of the other, marks of the same number; otherwise marks at the place that the edits leave them.
/// Marks without a partner, and those that aren't the same as their partner, are added to the differences.
class Pairing {
public:
    Pairing(const Marks& before, const Marks& after, std::vector<Difference>& differences);
    Pairing(const Marks& before, const Marks& after, const Edits& edits,
            std::vector<Difference>& differences);

    std::size_t getBefore(std::size_t markAfter) const {
        return markAfter < numbers.size() ? numbers[markAfter] : markAfter;
    }

private:
    void add(std::size_t mark, std::size_t markAfter);

    std::vector<std::size_t> numbers; ///< empty if all are the same
};

} // namespace ombrel
