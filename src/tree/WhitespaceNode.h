#pragma once

#include "tree/LeafNode.h"
#include "tree/WhitespaceItem.h"

#include <memory_resource>
#include <string>
#include <vector>

namespace ca::formatting {

class CommentMover;

/// Everything between two tokens of code: blanks, line ends, comments, stray separators. There is a node in
/// every gap, also where the source has nothing, since the formatter must be able to put something there.
/// These are the only places where the output can differ from the source.
class WhitespaceNode : public LeafNode {
public:
    std::unordered_set<FormatNode*> getDependencies() const override;
    std::u16string getName() const override;
    const WhitespaceNode* asWhitespace() const override { return this; }

    /// Whether a line break may be chosen here.
    virtual bool isLineBreakCandidate(std::shared_ptr<FormattingConfig> config) const = 0;

    const std::pmr::vector<WhitespaceItem>& getItems() const { return items; }

    /// Length of the run as the source has it; empty if it has a line end or a comment in it.
    std::optional<std::uint64_t> getOriginalWidth() const;

    std::u16string getOriginalText() const;

    /// Column behind the run as renderItems() prints it, with one exception: a rewritten line start counts as
    /// one level, however deep the line is. That reaches only the measuring of the rest of its line.
    std::uint64_t computeEndColumn(FormatPass& pass) const;

    /// The text of the run with line starts, blanks and line ends as the options want them. Line ends come
    /// out as line feeds, comments whole.
    std::u16string renderItems(FormatPass& pass) const;

    /// The run between quotes, escaped so that it stays on one line of a dump.
    std::u16string getQuotedText() const;

    bool hasComment() const;

protected:
    /// The items are kept in the memory that the name comes in: a file has so many gaps that a heap block for
    /// each of their names and lists would take longer to get and free than to fill.
    WhitespaceNode(IndentNode* indent, const std::vector<const ca::lexer::Token*>& run,
                   std::pmr::u16string name);

    /// The same as without a mover, but with comments as the mover moves them. It has to be a fresh one; null
    /// moves nothing.
    std::uint64_t computeEndColumn(FormatPass& pass, CommentMover* mover) const;
    std::u16string renderItems(FormatPass& pass, CommentMover* mover) const;

private:
    std::pmr::vector<WhitespaceItem> items;
    std::pmr::u16string name;
};

} // namespace ca::formatting
