// Four classes of gaps differ only in two texts and in who chooses between them: what a gap becomes when it
// is broken or joined by a decision of the pass, and what it becomes when it is trimmed. Where neither
// applies, the gap keeps its own items.
#include "tree/WhitespaceNodes.h"

#include "pass/FormatPass.h"

#include <string_view>
#include <utility>

namespace ca::formatting {

namespace {

/// What a gap that can break becomes by decision.
struct BreakStyle {
    std::u16string_view broken; ///< before the indentation
    std::u16string_view joined;
};

constexpr BreakStyle operatorStyle = {u" ...\n", u" "};
constexpr BreakStyle separatorStyle = {u"\n", u", "};

std::uint64_t getEndColumn(const WhitespaceNode& node, FormatPass& pass, WhitespaceDecision decision,
                           const BreakStyle& style) {
    switch (decision) {
    case WhitespaceDecision::LineBreak:
        return pass.findLeafIndentation(node).size();
    case WhitespaceDecision::NoLineBreak:
        return pass.getPreviousEndColumn(node) + style.joined.size();
    case WhitespaceDecision::Preserve:
        return node.computeEndColumn(pass);
    }
    return 0;
}

void appendDecidedText(const WhitespaceNode& node, FormatPass& pass, WhitespaceDecision decision,
                       const BreakStyle& style, std::u16string& text) {
    switch (decision) {
    case WhitespaceDecision::LineBreak:
        text += style.broken;
        text += pass.findLeafIndentation(node);
        return;
    case WhitespaceDecision::NoLineBreak:
        text += style.joined;
        return;
    case WhitespaceDecision::Preserve:
        node.appendItems(pass, text);
    }
}

// What a gap that can't break becomes when it is trimmed.
constexpr std::u16string_view trimmedNecessary = u" ";
constexpr std::u16string_view trimmedUnnecessary{};

std::optional<std::uint64_t> getTrimmedWidth(const WhitespaceNode& node, bool trim,
                                             std::u16string_view trimmed) {
    return trim ? trimmed.size() : node.getOriginalWidth();
}

std::uint64_t getTrimmedEndColumn(const WhitespaceNode& node, FormatPass& pass, std::u16string_view trimmed) {
    if (pass.getOptions().getTrimUnnecessaryWhitespace()) {
        return pass.getPreviousEndColumn(node) + trimmed.size();
    }
    return node.computeEndColumn(pass);
}

void appendTrimmedText(const WhitespaceNode& node, FormatPass& pass, std::u16string_view trimmed,
                       std::u16string& text) {
    if (pass.getOptions().getTrimUnnecessaryWhitespace()) {
        text += trimmed;
    } else {
        node.appendOriginalText(text);
    }
}

template <class Node>
std::u16string makeText(const Node& node, FormatPass& pass) {
    std::u16string text;
    node.appendText(pass, text);
    return text;
}

DebugTable makeLeafTable(const char16_t* label, const WhitespaceNode& node) {
    DebugTable table;
    table.appendRow({label, node.getQuotedText()});
    return table;
}

} // namespace

void BinaryOperationWhitespaceNode::format(FormatPass& pass) {
    pass.setEndColumn(*this, getEndColumn(*this, pass, getEffectiveDecision(pass), operatorStyle));
}

DebugTable BinaryOperationWhitespaceNode::getDebugTable() const {
    return makeLeafTable(u"BinaryOperationWhitespace", *this);
}

std::optional<std::uint64_t>
BinaryOperationWhitespaceNode::getInlineWidth(std::shared_ptr<FormattingConfig>) const {
    return getWidth();
}

std::optional<std::uint64_t> BinaryOperationWhitespaceNode::getWidth() const {
    return operatorStyle.joined.size();
}

std::u16string BinaryOperationWhitespaceNode::getText(FormatPass& pass) const {
    return makeText(*this, pass);
}

void BinaryOperationWhitespaceNode::appendText(FormatPass& pass, std::u16string& text) const {
    appendDecidedText(*this, pass, getEffectiveDecision(pass), operatorStyle, text);
}

/// `placement` gives the separator placement of a kind.
template <class Placement>
bool BinaryOperationWhitespaceNode::isOnSide(Placement placement) const {
    if (getKind() == FormattingConfig::ContainerKind::None) {
        return false;
    }
    switch (placement(getKind())) {
    case FormattingConfig::SeparatorPlacement::StartOfLine:
        return getSide() == Side::Before;
    case FormattingConfig::SeparatorPlacement::EndOfLine:
        return getSide() == Side::After;
    }
    return false;
}

bool BinaryOperationWhitespaceNode::isLineBreakCandidate(std::shared_ptr<FormattingConfig> config) const {
    return isOnSide(
        [&](FormattingConfig::ContainerKind kind) { return config->getSeparatorPlacement(kind); });
}

bool BinaryOperationWhitespaceNode::isCandidate(OptionCache& options) const {
    return isOnSide(
        [&](FormattingConfig::ContainerKind kind) { return options.getSeparatorPlacement(kind); });
}

WhitespaceDecision BinaryOperationWhitespaceNode::getEffectiveDecision(FormatPass& pass) const {
    if (pass.getOptions().getLineBreakingEnabled() && !pass.isCandidate(*this)) {
        return WhitespaceDecision::NoLineBreak;
    }
    return pass.getBreakDecision(*this);
}

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

void LineSeparatorWhitespaceNode::format(FormatPass& pass) {
    pass.setEndColumn(*this, getEndColumn(*this, pass, pass.getBreakDecision(*this), separatorStyle));
}

DebugTable LineSeparatorWhitespaceNode::getDebugTable() const {
    return makeLeafTable(u"LineSeparatorWhitespace", *this);
}

std::optional<std::uint64_t>
LineSeparatorWhitespaceNode::getInlineWidth(std::shared_ptr<FormattingConfig>) const {
    return getWidth();
}

std::optional<std::uint64_t> LineSeparatorWhitespaceNode::getWidth() const {
    return separatorStyle.joined.size();
}

std::u16string LineSeparatorWhitespaceNode::getText(FormatPass& pass) const {
    return makeText(*this, pass);
}

void LineSeparatorWhitespaceNode::appendText(FormatPass& pass, std::u16string& text) const {
    appendDecidedText(*this, pass, pass.getBreakDecision(*this), separatorStyle, text);
}

bool LineSeparatorWhitespaceNode::isLineBreakCandidate(std::shared_ptr<FormattingConfig>) const {
    return true;
}

void NecessaryWhitespaceNode::format(FormatPass& pass) {
    pass.setEndColumn(*this, getTrimmedEndColumn(*this, pass, trimmedNecessary));
}

DebugTable NecessaryWhitespaceNode::getDebugTable() const {
    return makeLeafTable(u"NecessaryWhitespace", *this);
}

std::optional<std::uint64_t>
NecessaryWhitespaceNode::getInlineWidth(std::shared_ptr<FormattingConfig> config) const {
    return getTrimmedWidth(*this, config->getTrimUnnecessaryWhitespace(), trimmedNecessary);
}

std::optional<std::uint64_t> NecessaryWhitespaceNode::getWidth(OptionCache& options) const {
    return getTrimmedWidth(*this, options.getTrimUnnecessaryWhitespace(), trimmedNecessary);
}

std::u16string NecessaryWhitespaceNode::getText(FormatPass& pass) const {
    return makeText(*this, pass);
}

void NecessaryWhitespaceNode::appendText(FormatPass& pass, std::u16string& text) const {
    appendTrimmedText(*this, pass, trimmedNecessary, text);
}

bool NecessaryWhitespaceNode::isLineBreakCandidate(std::shared_ptr<FormattingConfig>) const {
    return false;
}

void UnnecessaryWhitespaceNode::format(FormatPass& pass) {
    pass.setEndColumn(*this, getTrimmedEndColumn(*this, pass, trimmedUnnecessary));
}

DebugTable UnnecessaryWhitespaceNode::getDebugTable() const {
    return makeLeafTable(u"UnnecessaryWhitespace", *this);
}

std::optional<std::uint64_t>
UnnecessaryWhitespaceNode::getInlineWidth(std::shared_ptr<FormattingConfig> config) const {
    return getTrimmedWidth(*this, config->getTrimUnnecessaryWhitespace(), trimmedUnnecessary);
}

std::optional<std::uint64_t> UnnecessaryWhitespaceNode::getWidth(OptionCache& options) const {
    return getTrimmedWidth(*this, options.getTrimUnnecessaryWhitespace(), trimmedUnnecessary);
}

std::u16string UnnecessaryWhitespaceNode::getText(FormatPass& pass) const {
    return makeText(*this, pass);
}

void UnnecessaryWhitespaceNode::appendText(FormatPass& pass, std::u16string& text) const {
    appendTrimmedText(*this, pass, trimmedUnnecessary, text);
}

bool UnnecessaryWhitespaceNode::isLineBreakCandidate(std::shared_ptr<FormattingConfig>) const {
    return false;
}

} // namespace ca::formatting
