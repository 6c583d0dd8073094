#include "tree/AlignedCommentNode.h"

#include "pass/FormatPass.h"
#include "tree/CommentMover.h"

namespace ca::formatting {

void AlignedCommentNode::format(FormatPass& pass) {
    CommentMover mover = makeMover(pass);
    pass.setEndColumn(*this, computeEndColumn(pass, &mover));
}

std::u16string AlignedCommentNode::getText(FormatPass& pass) const {
    CommentMover mover = makeMover(pass);
    return renderItems(pass, &mover);
}

CommentMover AlignedCommentNode::makeMover(FormatPass& pass) const {
    return {pass.getConfig()->getIndentationEnabled(), pass.getLeafIndentation(*this)};
}

} // namespace ca::formatting
