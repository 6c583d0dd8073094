#pragma once

#include "tree/WhitespaceNode.h"

#include <cstdint>

namespace ca::formatting {

enum class WhitespaceDecision : std::uint32_t;

/// A gap beside a binary operator. It can break the line, and then has to continue it:
///
///     total = alpha ...          the gap in front of + is broken, the one behind it is one blank
///         + beta
///
/// The separator placement of the operator's group says on which of the operator's two sides that may happen.
class BinaryOperationWhitespaceNode : public WhitespaceNode {
public:
    enum class Side : std::uint32_t {
        Before = 0, ///< in front of the operator
        After = 1,  ///< behind it
    };

    BinaryOperationWhitespaceNode(FormattingConfig::ContainerKind kind, Side side, IndentNode* indent,
                                  const std::vector<const ca::lexer::Token*>& run, std::pmr::u16string name);

    void format(FormatPass& pass) override;
    DebugTable getDebugTable() const override;
    std::optional<std::uint64_t> getInlineWidth(std::shared_ptr<FormattingConfig> config) const override;
    std::u16string getText(FormatPass& pass) const override;
    bool isLineBreakCandidate(std::shared_ptr<FormattingConfig> config) const override;

private:
    /// With line breaking on, the side where no break can fall is always one blank.
    WhitespaceDecision getEffectiveDecision(FormatPass& pass) const;

    FormattingConfig::ContainerKind kind;
    Side side;
};

/// A gap with a comment in it, in place of whatever class the gap would have had: nothing is moved across a
/// comment, so its lines stay as they are and only their starts are rewritten.
class CommentNode : public WhitespaceNode {
public:
    CommentNode(IndentNode* indent, const std::vector<const ca::lexer::Token*>& run,
                std::pmr::u16string name);

    void format(FormatPass& pass) override;
    DebugTable getDebugTable() const override;
    std::optional<std::uint64_t> getInlineWidth(std::shared_ptr<FormattingConfig> config) const override;
    std::u16string getText(FormatPass& pass) const override;
    bool isLineBreakCandidate(std::shared_ptr<FormattingConfig> config) const override;
};

/// A gap between two statements or members. Where lines are joined it is a comma and a blank, whatever
/// separators stood in it.
class LineSeparatorWhitespaceNode : public WhitespaceNode {
public:
    LineSeparatorWhitespaceNode(IndentNode* indent, const std::vector<const ca::lexer::Token*>& run,
                                std::pmr::u16string name);

    void format(FormatPass& pass) override;
    DebugTable getDebugTable() const override;
    std::optional<std::uint64_t> getInlineWidth(std::shared_ptr<FormattingConfig> config) const override;
    std::u16string getText(FormatPass& pass) const override;
    bool isLineBreakCandidate(std::shared_ptr<FormattingConfig> config) const override;
};

/// A gap between words that would run together: trimmed to one blank, otherwise the source's text as it is,
/// line ends included. It takes no part in indentation, though its end column counts line starts as if it
/// did.
class NecessaryWhitespaceNode : public WhitespaceNode {
public:
    NecessaryWhitespaceNode(IndentNode* indent, const std::vector<const ca::lexer::Token*>& run,
                            std::pmr::u16string name);

    void format(FormatPass& pass) override;
    DebugTable getDebugTable() const override;
    std::optional<std::uint64_t> getInlineWidth(std::shared_ptr<FormattingConfig> config) const override;
    std::u16string getText(FormatPass& pass) const override;
    bool isLineBreakCandidate(std::shared_ptr<FormattingConfig> config) const override;
};

/// A gap that needs nothing in it: trimmed to nothing, otherwise as a NecessaryWhitespaceNode.
class UnnecessaryWhitespaceNode : public WhitespaceNode {
public:
    UnnecessaryWhitespaceNode(IndentNode* indent, const std::vector<const ca::lexer::Token*>& run,
                              std::pmr::u16string name);

    void format(FormatPass& pass) override;
    DebugTable getDebugTable() const override;
    std::optional<std::uint64_t> getInlineWidth(std::shared_ptr<FormattingConfig> config) const override;
    std::u16string getText(FormatPass& pass) const override;
    bool isLineBreakCandidate(std::shared_ptr<FormattingConfig> config) const override;
};

} // namespace ca::formatting
