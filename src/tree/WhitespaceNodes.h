#pragma once

#include "tree/WhitespaceNode.h"

#include <cstdint>
#include <utility>

namespace ca::formatting {

class OptionCache;
enum class WhitespaceDecision : std::uint32_t;

// Each class has two constructors: one for a run of any tokens with any name, which it keeps, and one for a
// run that somebody else keeps.

/// A gap beside a binary operator. It can break the line, and then has to continue it:
///
///     total = alpha ...          the gap before + is broken, the one after it is one space
///         + beta
///
/// The separator placement of the operator's group says on which of the operator's two sides that may happen.
class BinaryOperationWhitespaceNode : public WhitespaceNode {
public:
    enum class Side : std::uint32_t {
        Before = 0, ///< before the operator
        After = 1,  ///< after it
    };

    BinaryOperationWhitespaceNode(FormattingConfig::ContainerKind kind, Side side, IndentNode* indent,
                                  const std::vector<const ca::lexer::Token*>& run, std::u16string name)
        : WhitespaceNode(indent, run, std::move(name), makeDetail(kind, side)) {}
    BinaryOperationWhitespaceNode(FormattingConfig::ContainerKind kind, Side side, IndentNode* indent,
                                  const ClassifiedRun& run)
        : WhitespaceNode(indent, run, makeDetail(kind, side)) {}

    void format(FormatPass& pass) override;
    DebugTable getDebugTable() const override;
    std::optional<std::uint64_t> getInlineWidth(std::shared_ptr<FormattingConfig> config) const override;
    std::u16string getText(FormatPass& pass) const override;
    bool isLineBreakCandidate(std::shared_ptr<FormattingConfig> config) const override;

    std::optional<std::uint64_t> getWidth() const;
    bool isCandidate(OptionCache& options) const;
    void appendText(FormatPass& pass, std::u16string& text) const;

private:
    static std::uint32_t makeDetail(FormattingConfig::ContainerKind kind, Side side) {
        return static_cast<std::uint32_t>(kind) << 1 | static_cast<std::uint32_t>(side);
    }
    FormattingConfig::ContainerKind getKind() const {
        return static_cast<FormattingConfig::ContainerKind>(getDetail() >> 1);
    }
    Side getSide() const { return static_cast<Side>(getDetail() & 1); }

    template <class Placement>
    bool isOnSide(Placement placement) const;

    /// With line breaking on, the side where no break can fall is always one space.
    WhitespaceDecision getEffectiveDecision(FormatPass& pass) const;
};

/// A gap with a comment in it, in place of whatever class the gap would have had: nothing is moved across a
/// comment, so its lines stay as they are and only their starts are rewritten.
class CommentNode : public WhitespaceNode {
public:
    CommentNode(IndentNode* indent, const std::vector<const ca::lexer::Token*>& run, std::u16string name)
        : WhitespaceNode(indent, run, std::move(name)) {}
    CommentNode(IndentNode* indent, const ClassifiedRun& run) : WhitespaceNode(indent, run) {}

    void format(FormatPass& pass) override;
    DebugTable getDebugTable() const override;
    std::optional<std::uint64_t> getInlineWidth(std::shared_ptr<FormattingConfig> config) const override;
    std::u16string getText(FormatPass& pass) const override;
    bool isLineBreakCandidate(std::shared_ptr<FormattingConfig> config) const override;
};

/// A gap between two statements or members. Where lines are joined it is a comma and a space, whatever
/// separators were in it.
class LineSeparatorWhitespaceNode : public WhitespaceNode {
public:
    LineSeparatorWhitespaceNode(IndentNode* indent, const std::vector<const ca::lexer::Token*>& run,
                                std::u16string name)
        : WhitespaceNode(indent, run, std::move(name)) {}
    LineSeparatorWhitespaceNode(IndentNode* indent, const ClassifiedRun& run) : WhitespaceNode(indent, run) {}

    void format(FormatPass& pass) override;
    DebugTable getDebugTable() const override;
    std::optional<std::uint64_t> getInlineWidth(std::shared_ptr<FormattingConfig> config) const override;
    std::u16string getText(FormatPass& pass) const override;
    bool isLineBreakCandidate(std::shared_ptr<FormattingConfig> config) const override;

    std::optional<std::uint64_t> getWidth() const;
    void appendText(FormatPass& pass, std::u16string& text) const;
};

/// A gap between words that would run together: trimmed to one space, otherwise the source's text as it is,
/// line ends included. It takes no part in indentation, though its end column counts line starts as if it
/// did.
class NecessaryWhitespaceNode : public WhitespaceNode {
public:
    NecessaryWhitespaceNode(IndentNode* indent, const std::vector<const ca::lexer::Token*>& run,
                            std::u16string name)
        : WhitespaceNode(indent, run, std::move(name)) {}
    NecessaryWhitespaceNode(IndentNode* indent, const ClassifiedRun& run) : WhitespaceNode(indent, run) {}

    void format(FormatPass& pass) override;
    DebugTable getDebugTable() const override;
    std::optional<std::uint64_t> getInlineWidth(std::shared_ptr<FormattingConfig> config) const override;
    std::u16string getText(FormatPass& pass) const override;
    bool isLineBreakCandidate(std::shared_ptr<FormattingConfig> config) const override;

    std::optional<std::uint64_t> getWidth(OptionCache& options) const;
    void appendText(FormatPass& pass, std::u16string& text) const;
};

/// A gap that needs nothing in it: trimmed to nothing, otherwise as a NecessaryWhitespaceNode.
class UnnecessaryWhitespaceNode : public WhitespaceNode {
public:
    UnnecessaryWhitespaceNode(IndentNode* indent, const std::vector<const ca::lexer::Token*>& run,
                              std::u16string name)
        : WhitespaceNode(indent, run, std::move(name)) {}
    UnnecessaryWhitespaceNode(IndentNode* indent, const ClassifiedRun& run) : WhitespaceNode(indent, run) {}

    void format(FormatPass& pass) override;
    DebugTable getDebugTable() const override;
    std::optional<std::uint64_t> getInlineWidth(std::shared_ptr<FormattingConfig> config) const override;
    std::u16string getText(FormatPass& pass) const override;
    bool isLineBreakCandidate(std::shared_ptr<FormattingConfig> config) const override;

    std::optional<std::uint64_t> getWidth(OptionCache& options) const;
    void appendText(FormatPass& pass, std::u16string& text) const;
};

template <>
inline constexpr ExactClass exactClassOf<BinaryOperationWhitespaceNode> =
    ExactClass::BinaryOperationWhitespace;
template <>
inline constexpr ExactClass exactClassOf<CommentNode> = ExactClass::Comment;
template <>
inline constexpr ExactClass exactClassOf<LineSeparatorWhitespaceNode> = ExactClass::LineSeparatorWhitespace;
template <>
inline constexpr ExactClass exactClassOf<NecessaryWhitespaceNode> = ExactClass::NecessaryWhitespace;
template <>
inline constexpr ExactClass exactClassOf<UnnecessaryWhitespaceNode> = ExactClass::UnnecessaryWhitespace;

} // namespace ca::formatting
