#pragma once

#include "tree/LeafNode.h"
#include "tree/WhitespaceItem.h"

#include <span>
#include <string>
#include <vector>

namespace ca::formatting {

class CommentMover;

/// A run that is classified, and the arena of the node that keeps a copy. The node's name is made of the
/// numbers of its tokens, "WhitespaceNode_T7_T9".
struct ClassifiedRun {
    lf::astapi::AstNodeAllocator& arena;
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
    /// Keeps the name and what it makes of the run. The detail is for the derived class.
    WhitespaceNode(IndentNode* indent, const std::vector<const ca::lexer::Token*>& run, std::u16string name,
                   std::uint32_t detail = 0);

    WhitespaceNode(IndentNode* indent, const ClassifiedRun& run, std::uint32_t detail = 0);

    std::uint32_t getDetail() const;

    /// The same as without a mover, but with comments as the mover moves them. It has to be a fresh one; null
    /// moves nothing.
    std::uint64_t computeEndColumn(FormatPass& pass, CommentMover* mover) const;
    void appendItems(FormatPass& pass, CommentMover* mover, std::u16string& text) const;

private:
    /// Most gaps are empty, so what only others have isn't in the node. `storage.run` says which it is.
    enum RunStorage : std::uint8_t { Empty, Kept, Own };

    struct EmptyRun {
        std::uint32_t place; ///< of the token after it
        std::uint32_t detail;
    };

    struct KeptRun; ///< in the arena

    struct OwnRun {
        std::vector<WhitespaceItem> items;
        std::u16string name;
        std::uint32_t detail;
    };

    union {
        EmptyRun empty;
        const KeptRun* kept;
        const OwnRun* own; ///< of this node
    };
};

} // namespace ca::formatting
