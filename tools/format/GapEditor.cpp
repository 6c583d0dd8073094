#include "format/GapEditor.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace ombrel {

namespace {

/// Whether a text is whitespace, line ends, separators and whole continuations.
bool isLayout(std::u16string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == u'.') {
            const std::size_t end = std::min(text.find_first_not_of(u'.', i), text.size());
            if (end - i != 3) {
                return false;
            }
            i = end - 1;
        } else if (!ombrel::isLayout(text[i])) {
            return false;
        }
    }
    return true;
}

/// Whether a place is between the CR and the LF of one line end.
bool isInLineEnd(std::u16string_view text, std::size_t offset) {
    return offset > 0 && offset < text.size() && text[offset - 1] == u'\r' && text[offset] == u'\n';
}

} // namespace

void GapEditor::enter(std::size_t next) {
    gap = next;
    ombrel::getComments(gaps, gap, comments);
    nextComment = 0;
}

bool GapEditor::accepts(const EditView& edit) {
    const std::u16string_view source = gaps.getSource();
    return isInGap(edit) && !touchesComment(edit) && !isInLineEnd(source, edit.offset) &&
           !isInLineEnd(source, edit.getEnd()) && isLayout(source.substr(edit.offset, edit.length)) &&
           isLayout(edit.text);
}

void GapEditor::add(const EditView& edit) {
    const bool isInOrder = edits.empty() || edits.back().getEnd() <= edit.offset;
    if (!isInOrder || !accepts(edit)) {
        throw std::logic_error("an edit would change more than whitespace and separators");
    }
    edits.add(edit);
}

bool GapEditor::isInGap(const EditView& edit) const {
    return gaps.getBegin(gap) <= edit.offset && edit.getEnd() <= gaps.getEnd(gap);
}

bool GapEditor::touchesComment(const EditView& edit) {
    const auto getEnd = [](const GapComment& comment) { return comment.offset + comment.text.size(); };
    while (nextComment < comments.size() && getEnd(comments[nextComment]) <= edit.offset) {
        ++nextComment;
    }
    return nextComment < comments.size() && comments[nextComment].offset < edit.getEnd();
}

} // namespace ombrel
