#pragma once

#include "text/Edit.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ombrel {

/// Makes edits that replace whitespace (spaces and tabs) at the edges of a text's lines by other whitespace.
/// Such an edit leaves the lines of a text what they are, whatever it is a text of.
class LineEdgeEditor {
public:
    /// Keeps the text by reference.
    explicit LineEdgeEditor(std::u16string_view text) : text(text) {}

    /// Whether an edit of the text is of this kind.
    static bool accepts(std::u16string_view text, const EditView& edit);

    /// Adds an edit after those before it. Throws std::logic_error if it is of another kind, or not after
    /// them.
    void add(const EditView& edit);

    /// The edits so far. Call once.
    Edits take() { return std::move(edits); }

private:
    std::u16string_view text;
    Edits edits;
};

} // namespace ombrel
