#pragma once

#include "tree/LeafNode.h"
#include "tree/WhitespaceItem.h"

#include <span>
#include <string>
#include <vector>

namespace ca::formatting {

class CommentMover;

/// A run that is classified, in memory that outlives the node. The node's name is made of the numbers of its
/// tokens, "WhitespaceNode_T7_T9".
struct ClassifiedRun {
    std::span<const WhitespaceItem> items;
    std::uint32_t firstToken; ///< its place in the token list, from 0
    std::uint32_t endToken;   ///< place of the token after the run
};

/// Everything between two tokens of code: spaces, tabs, line ends, comments, stray separators. There is a
/// node in every gap, also where the source has nothing, since the formatter must be able to put something
/// there. These are the only places where the output can differ from the source.
class WhitespaceNode : public LeafNode {
public:
    ~WhitespaceNode() override;

    std::unordered_set<FormatNode*> getDependencies() const override;
    std::u16string getName() const override;

    /// Whether a line break may be chosen here.
    virtual bool isLineBreakCandidate(std::shared_ptr<FormattingConfig> config) const = 0;

    std::span<const WhitespaceItem> getItems() const;

    /// Length of the run as the source has it, in 16-bit characters; empty if it has a line end or a comment
    /// in it.
    std::optional<std::uint64_t> getOriginalWidth() const;

    std::u16string getOriginalText() const;

    /// Column after the run as renderItems() prints it, with one exception: a rewritten line start counts as
    /// one level, however deep the line is. That affects only the measuring of the rest of its line.
    std::uint64_t computeEndColumn(FormatPass& pass) const;

    /// The text of the run with line starts, whitespace and line ends as the options want them. Line ends
    /// come out as line feeds, comments whole.
    std::u16string renderItems(FormatPass& pass) const;

    /// The run between quotes, escaped so that it stays on one line of a dump.
    std::u16string getQuotedText() const;

    bool hasComment() const;

    // The same as the operations without "append", but to the end of a text.
    void appendOriginalText(std::u16string& text) const;
    void appendItems(FormatPass& pass, std::u16string& text) const;

protected:
    /// Keeps the name and what it makes of the run.
    WhitespaceNode(IndentNode* indent, const std::vector<const ca::lexer::Token*>& run, std::u16string name);

    WhitespaceNode(IndentNode* indent, const ClassifiedRun& run);

    /// The same as without a mover, but with comments as the mover moves them. It has to be a fresh one; null
    /// moves nothing.
    std::uint64_t computeEndColumn(FormatPass& pass, CommentMover* mover) const;
    void appendItems(FormatPass& pass, CommentMover* mover, std::u16string& text) const;

private:
    struct OwnRun {
        std::vector<WhitespaceItem> items;
        std::u16string name;
    };

    union {
        const WhitespaceItem* items; ///< of others
        const OwnRun* own;           ///< of this node, if hasOwnMemory()
    };
    std::uint32_t itemCount = 0;
    std::uint32_t firstToken = 0;
    std::uint32_t endToken = 0;
};

} // namespace ca::formatting
