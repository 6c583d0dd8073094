#include "tree/WhitespaceNodes.h"

#include "pass/FormatPass.h"

#include <string_view>
#include <utility>

namespace ca::formatting {

namespace {

using Run = std::vector<const ca::lexer::Token*>;

/// What a gap that can break becomes by decision.
struct BreakStyle {
    std::u16string_view broken; ///< in front of the indentation
    std::u16string_view joined;
};

constexpr BreakStyle operatorStyle = {u" ...\n", u" "};
constexpr BreakStyle separatorStyle = {u"\n", u", "};

std::uint64_t getEndColumn(const WhitespaceNode& node, FormatPass& pass, WhitespaceDecision decision,
                           const BreakStyle& style) {
    switch (decision) {
    case WhitespaceDecision::LineBreak:
        return pass.getLeafIndentation(node).size();
    case WhitespaceDecision::NoLineBreak:
        return pass.getPreviousEndColumn(node) + style.joined.size();
    case WhitespaceDecision::Preserve:
        return node.computeEndColumn(pass);
    }
    return 0;
}

std::u16string getDecidedText(const WhitespaceNode& node, FormatPass& pass, WhitespaceDecision decision,
                              const BreakStyle& style) {
    switch (decision) {
    case WhitespaceDecision::LineBreak:
        return std::u16string(style.broken) + pass.getLeafIndentation(node);
    case WhitespaceDecision::NoLineBreak:
        return std::u16string(style.joined);
    case WhitespaceDecision::Preserve:
        return node.renderItems(pass);
    }
    return {};
}

// What a gap that can't break becomes when it is trimmed.
constexpr std::u16string_view trimmedNecessary = u" ";
constexpr std::u16string_view trimmedUnnecessary{};

std::optional<std::uint64_t> getTrimmedWidth(const WhitespaceNode& node, const FormattingConfig& config,
                                             std::u16string_view trimmed) {
    return config.getTrimUnnecessaryWhitespace() ? trimmed.size() : node.getOriginalWidth();
}

std::uint64_t getTrimmedEndColumn(const WhitespaceNode& node, FormatPass& pass, std::u16string_view trimmed) {
    if (pass.getConfig()->getTrimUnnecessaryWhitespace()) {
        return pass.getPreviousEndColumn(node) + trimmed.size();
    }
    return node.computeEndColumn(pass);
}

std::u16string getTrimmedText(const WhitespaceNode& node, FormatPass& pass, std::u16string_view trimmed) {
    if (pass.getConfig()->getTrimUnnecessaryWhitespace()) {
        return std::u16string(trimmed);
    }
    return node.getOriginalText();
}

DebugTable makeLeafTable(const char16_t* label, const WhitespaceNode& node) {
    DebugTable table;
    table.appendRow({label, node.getQuotedText()});
    return table;
}

} // namespace

BinaryOperationWhitespaceNode::BinaryOperationWhitespaceNode(FormattingConfig::ContainerKind kind, Side side,
                                                             IndentNode* indent, const Run& run,
                                                             std::pmr::u16string name)
    : WhitespaceNode(indent, run, std::move(name)), kind(kind), side(side) {}

void BinaryOperationWhitespaceNode::format(FormatPass& pass) {
    pass.setEndColumn(*this, getEndColumn(*this, pass, getEffectiveDecision(pass), operatorStyle));
}

DebugTable BinaryOperationWhitespaceNode::getDebugTable() const {
    return makeLeafTable(u"BinaryOperationWhitespace", *this);
}

std::optional<std::uint64_t>
BinaryOperationWhitespaceNode::getInlineWidth(std::shared_ptr<FormattingConfig>) const {
    return operatorStyle.joined.size();
}

std::u16string BinaryOperationWhitespaceNode::getText(FormatPass& pass) const {
    return getDecidedText(*this, pass, getEffectiveDecision(pass), operatorStyle);
}

bool BinaryOperationWhitespaceNode::isLineBreakCandidate(std::shared_ptr<FormattingConfig> config) const {
    if (kind == FormattingConfig::ContainerKind::None) {
        return false;
    }
    switch (config->getSeparatorPlacement(kind)) {
    case FormattingConfig::SeparatorPlacement::StartOfLine:
        return side == Side::Before;
    case FormattingConfig::SeparatorPlacement::EndOfLine:
        return side == Side::After;
    }
    return false;
}

WhitespaceDecision BinaryOperationWhitespaceNode::getEffectiveDecision(FormatPass& pass) const {
    const auto config = pass.getConfig();
    if (config->getLineBreakingEnabled() && !isLineBreakCandidate(config)) {
        return WhitespaceDecision::NoLineBreak;
    }
    return pass.getBreakDecision(*this);
}

CommentNode::CommentNode(IndentNode* indent, const Run& run, std::pmr::u16string name)
    : WhitespaceNode(indent, run, std::move(name)) {}

void CommentNode::format(FormatPass& pass) {
    pass.setEndColumn(*this, computeEndColumn(pass));
}

DebugTable CommentNode::getDebugTable() const {
    return makeLeafTable(u"Comment", *this);
}

std::optional<std::uint64_t> CommentNode::getInlineWidth(std::shared_ptr<FormattingConfig>) const {
    return std::nullopt;
}

std::u16string CommentNode::getText(FormatPass& pass) const {
    return renderItems(pass);
}

bool CommentNode::isLineBreakCandidate(std::shared_ptr<FormattingConfig>) const {
    return false;
}

LineSeparatorWhitespaceNode::LineSeparatorWhitespaceNode(IndentNode* indent, const Run& run,
                                                         std::pmr::u16string name)
    : WhitespaceNode(indent, run, std::move(name)) {}

void LineSeparatorWhitespaceNode::format(FormatPass& pass) {
    pass.setEndColumn(*this, getEndColumn(*this, pass, pass.getBreakDecision(*this), separatorStyle));
}

DebugTable LineSeparatorWhitespaceNode::getDebugTable() const {
    return makeLeafTable(u"LineSeparatorWhitespace", *this);
}

std::optional<std::uint64_t>
LineSeparatorWhitespaceNode::getInlineWidth(std::shared_ptr<FormattingConfig>) const {
    return separatorStyle.joined.size();
}

std::u16string LineSeparatorWhitespaceNode::getText(FormatPass& pass) const {
    return getDecidedText(*this, pass, pass.getBreakDecision(*this), separatorStyle);
}

bool LineSeparatorWhitespaceNode::isLineBreakCandidate(std::shared_ptr<FormattingConfig>) const {
    return true;
}

NecessaryWhitespaceNode::NecessaryWhitespaceNode(IndentNode* indent, const Run& run, std::pmr::u16string name)
    : WhitespaceNode(indent, run, std::move(name)) {}

void NecessaryWhitespaceNode::format(FormatPass& pass) {
    pass.setEndColumn(*this, getTrimmedEndColumn(*this, pass, trimmedNecessary));
}

DebugTable NecessaryWhitespaceNode::getDebugTable() const {
    return makeLeafTable(u"NecessaryWhitespace", *this);
}

std::optional<std::uint64_t>
NecessaryWhitespaceNode::getInlineWidth(std::shared_ptr<FormattingConfig> config) const {
    return getTrimmedWidth(*this, *config, trimmedNecessary);
}

std::u16string NecessaryWhitespaceNode::getText(FormatPass& pass) const {
    return getTrimmedText(*this, pass, trimmedNecessary);
}

bool NecessaryWhitespaceNode::isLineBreakCandidate(std::shared_ptr<FormattingConfig>) const {
    return false;
}

UnnecessaryWhitespaceNode::UnnecessaryWhitespaceNode(IndentNode* indent, const Run& run,
                                                     std::pmr::u16string name)
    : WhitespaceNode(indent, run, std::move(name)) {}

void UnnecessaryWhitespaceNode::format(FormatPass& pass) {
    pass.setEndColumn(*this, getTrimmedEndColumn(*this, pass, trimmedUnnecessary));
}

DebugTable UnnecessaryWhitespaceNode::getDebugTable() const {
    return makeLeafTable(u"UnnecessaryWhitespace", *this);
}

std::optional<std::uint64_t>
UnnecessaryWhitespaceNode::getInlineWidth(std::shared_ptr<FormattingConfig> config) const {
    return getTrimmedWidth(*this, *config, trimmedUnnecessary);
}

std::u16string UnnecessaryWhitespaceNode::getText(FormatPass& pass) const {
    return getTrimmedText(*this, pass, trimmedUnnecessary);
}

bool UnnecessaryWhitespaceNode::isLineBreakCandidate(std::shared_ptr<FormattingConfig>) const {
    return false;
}

} // namespace ca::formatting
