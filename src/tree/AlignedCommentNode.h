#pragma once

#include "tree/WhitespaceNodes.h"

namespace ca::formatting {

class CommentMover;

/// A gap with a comment in it whose comment lines are moved to their level before they are measured and
/// printed: see CommentLines::Aligned.
class AlignedCommentNode : public CommentNode {
public:
    using CommentNode::CommentNode;

    void format(FormatPass& pass) override;
    std::u16string getText(FormatPass& pass) const override;

private:
    CommentMover makeMover(FormatPass& pass) const;
};

} // namespace ca::formatting
