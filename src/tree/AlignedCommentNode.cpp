#include "tree/AlignedCommentNode.h"

#include "pass/FormatPass.h"
#include "tree/CommentMover.h"

namespace ca::formatting {

void AlignedCommentNode::format(FormatPass& pass) {
    CommentMover mover = makeMover(pass);
    pass.setEndColumn(*this, computeEndColumn(pass, &mover));
}

std::u16string AlignedCommentNode::getText(FormatPass& pass) const {
    std::u16string text;
    appendText(pass, text);
    return text;
}

void AlignedCommentNode::appendText(FormatPass& pass, std::u16string& text) const {
    CommentMover mover = makeMover(pass);
    appendItems(pass, &mover, text);
}

CommentMover AlignedCommentNode::makeMover(FormatPass& pass) const {
    return {pass.getOptions().getIndentationEnabled(), pass.findLeafIndentation(*this)};
}

} // namespace ca::formatting
