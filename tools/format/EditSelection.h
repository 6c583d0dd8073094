#pragma once

#include "format/GapChoices.h"
#include "format/Suppression.h"
#include "text/Edit.h"
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

/// The edits that turn the gaps of the source into the chosen texts, as far as the selection accepts them.
///
/// Between two comments, a gap with as many line ends before as after has an edit for each line, and any
/// other a single one: a line that is joined to another is joined or not, as a whole. A block comment moves
/// as a whole too, so either all edits of its lines are accepted or none.
///
/// An edit keeps the line ends that it covers, from the first one on, and gives new ones the end of the line
/// before. No edit makes CR and LF meet that are two line ends.
Edits makeEdits(const GapList& gaps, const GapChoices& choices, const EditSelection& selection);

} // namespace ombrel
