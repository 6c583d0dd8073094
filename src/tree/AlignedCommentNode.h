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

    void appendText(FormatPass& pass, std::u16string& text) const;

private:
    CommentMover makeMover(FormatPass& pass) const;
};

template <>
inline constexpr ExactClass exactClassOf<AlignedCommentNode> = ExactClass::AlignedComment;

} // namespace ca::formatting
