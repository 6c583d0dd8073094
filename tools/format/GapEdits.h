#pragma once

#include "format/EditSelection.h"
#include "format/GapChoices.h"
#include "text/Edit.h"

namespace ombrel {

/// The edits that turn the gaps of the source into the chosen texts, as far as the selection accepts them.
///
/// Between two comments, a gap with as many line ends before as after has an edit for each line if no line
/// gets a separator or loses a continuation. Any other has a single one: a line that is joined to another is
/// joined or not, as a whole. A block comment moves as a whole too, so either all edits of its lines are
/// accepted or none.
///
/// An edit keeps the line ends that it covers, from the first one on, and gives new ones the end of the line
/// before. No edit makes CR and LF meet that are two line ends.
Edits makeEdits(const GapList& gaps, const GapChoices& choices, const EditSelection& selection);

/// Those of one gap.
Edits makeEdits(const GapList& gaps, const GapChoices& choices, const EditSelection& selection,
                std::size_t gap);

} // namespace ombrel
