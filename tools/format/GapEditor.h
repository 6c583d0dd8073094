#pragma once

#include "format/Gap.h"
#include "text/Edit.h"

#include <cstddef>
#include <string>
#include <vector>

namespace ombrel {

/// Makes edits of the gaps of a text. Such an edit replaces a part of one gap, none of which is in a comment,
/// by whitespace, line ends, separators and continuations.
class GapEditor {
public:
    /// Keeps the gaps by reference.
    explicit GapEditor(const GapList& gaps) : gaps(gaps) {}

    /// Goes to a gap, which isn't before the last one.
    void enter(std::size_t gap);

    /// The comments of the gap.
    const std::vector<GapComment>& getComments() const { return comments; }

    /// Whether an edit is one of the gap. Edits have to be asked about in ascending order.
    bool accepts(const EditView& edit);

    /// Adds an edit of the gap after those before it. Throws std::logic_error if it isn't one, or not after
    /// them.
    void add(const EditView& edit);

    /// The edits so far. Call once.
    Edits take() { return std::move(edits); }

private:
    bool isInGap(const EditView& edit) const;
    bool touchesComment(const EditView& edit);

    const GapList& gaps;
    std::size_t gap = 0;
    std::vector<GapComment> comments; ///< of the gap
    std::size_t nextComment = 0;      ///< the first that doesn't end before the last edit
    Edits edits;
};

} // namespace ombrel
