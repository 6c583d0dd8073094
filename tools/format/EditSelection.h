#pragma once

#include "format/Suppression.h"
#include "text/LineRange.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace ombrel {

/// The part of a text that may be edited: some ranges of lines or all, without the suppressed regions.
class EditSelection {
public:
    /// No ranges: the whole text.
    EditSelection(std::u16string_view text, std::vector<LineRange> ranges, const Suppression& suppression);

    /// Whether all of a part of the text may be edited. A part without length at the border of a suppressed
    /// region belongs to the region.
    bool accepts(std::size_t begin, std::size_t end) const;

private:
    struct Part {
        std::size_t begin;
        std::size_t end;
    };

    std::vector<Part> ranges; ///< ascending, from the start of a line to the end of one, line end excluded
    std::vector<Part> suppressed;
};

} // namespace ombrel
