#include "text/LineEdgeEditor.h"

#include "text/Whitespace.h"

#include <stdexcept>

namespace ombrel {

namespace {

bool isAllWhitespace(std::u16string_view text) {
    return countLeadingWhitespace(text) == text.size();
}

bool isLineStart(std::u16string_view text, std::size_t offset) {
    return offset == 0 || text[offset - 1] == u'\n' ||
           (text[offset - 1] == u'\r' && (offset == text.size() || text[offset] != u'\n'));
}

bool isLineEnd(std::u16string_view text, std::size_t offset) {
    return offset == text.size() || text[offset] == u'\r' ||
           (text[offset] == u'\n' && (offset == 0 || text[offset - 1] != u'\r'));
}

/// Whether an edit takes all that is between two line ends, which are CRLF without it.
bool joinsLineEnds(std::u16string_view text, const EditView& edit) {
    return edit.text.empty() && edit.offset > 0 && text[edit.offset - 1] == u'\r' &&
           edit.getEnd() < text.size() && text[edit.getEnd()] == u'\n';
}

} // namespace

bool LineEdgeEditor::accepts(std::u16string_view text, const EditView& edit) {
    return edit.getEnd() <= text.size() && isAllWhitespace(text.substr(edit.offset, edit.length)) &&
           isAllWhitespace(edit.text) && (isLineStart(text, edit.offset) || isLineEnd(text, edit.getEnd())) &&
           !joinsLineEnds(text, edit);
}

void LineEdgeEditor::add(const EditView& edit) {
    const bool isInOrder = edits.empty() || edits.back().getEnd() <= edit.offset;
    if (!isInOrder || !accepts(text, edit)) {
        throw std::logic_error("an edit would change more than whitespace at the edge of a line");
    }
    edits.add(edit);
}

} // namespace ombrel
