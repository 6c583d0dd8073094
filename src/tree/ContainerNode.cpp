#include "tree/ContainerNode.h"

#include "pass/FormatPass.h"
#include "tree/IndentNode.h"
#include "tree/WhitespaceNode.h"

namespace ca::formatting {

using LineBreakBehavior = FormattingConfig::LineBreakBehavior;

namespace {

/// The child as a gap where a line break may be chosen, null if it isn't one.
const WhitespaceNode* getCandidate(const TextNode* child, const std::shared_ptr<FormattingConfig>& config) {
    const WhitespaceNode* whitespace = child->asWhitespace();
    return whitespace != nullptr && whitespace->isLineBreakCandidate(config) ? whitespace : nullptr;
}

void decideAllCandidates(const ContainerNode::Children& children, FormatPass& pass,
                         WhitespaceDecision decision) {
    const auto config = pass.getConfig();
    for (const TextNode* child : children) {
        if (const WhitespaceNode* candidate = getCandidate(child, config)) {
            pass.setBreakDecision(*candidate, decision);
        }
    }
}

/// Fills lines with one candidate in hand, the last one seen, whose decision waits until it is known whether
/// what stands behind it still fits.
class LineFiller {
public:
    LineFiller(FormatPass& pass, std::uint64_t startColumn)
        : pass(pass), config(pass.getConfig()), limit(config->getColumnLimit()), column(startColumn) {}

    void add(const TextNode& child) {
        if (const WhitespaceNode* candidate = getCandidate(&child, config)) {
            finish();
            pending = candidate;
            pendingColumn = column;
        }
        const auto width = child.getInlineWidth(config);
        column += width.value_or(0);
        const bool fits = width && column <= limit;
        if (!fits && pending != nullptr) {
            breakLine();
        }
    }

    /// Nothing overflowed behind the candidate in hand.
    void finish() {
        if (pending != nullptr) {
            pass.setBreakDecision(*pending, WhitespaceDecision::NoLineBreak);
            pending = nullptr;
        }
    }

private:
    /// What stands behind the candidate moves to a line of its own.
    void breakLine() {
        pass.setBreakDecision(*pending, WhitespaceDecision::LineBreak);
        column -= pendingColumn + pending->getInlineWidth(config).value_or(0);
        column += pass.getLeafIndentation(*pending).size();
        pending = nullptr;
    }

    FormatPass& pass;
    std::shared_ptr<FormattingConfig> config;
    std::uint64_t limit;
    std::uint64_t column;
    const WhitespaceNode* pending = nullptr;
    std::uint64_t pendingColumn = 0;
};

} // namespace

ContainerNode::ContainerNode(FormattingConfig::ContainerKind kind, Children ownChildren)
    : kind(kind), children(std::move(ownChildren)) {
    for (TextNode* child : children) {
        child->setParent(this);
    }
}

std::unordered_set<FormatNode*> ContainerNode::getDependencies() const {
    std::unordered_set<FormatNode*> dependencies;
    dependencies.max_load_factor(fewNodesLoadFactor);
    if (parent) {
        dependencies.insert(*parent);
    }
    if (const auto before = getLeafBefore()) {
        dependencies.insert(*before);
    }
    for (const TextNode* child : children) {
        if (const WhitespaceNode* whitespace = child->asWhitespace()) {
            dependencies.insert(whitespace->getIndent());
        }
    }
    return dependencies;
}

void ContainerNode::format(FormatPass& pass) {
    if (pass.getConfig()->getLineBreakingEnabled() && kind != FormattingConfig::ContainerKind::None) {
        decideLineBreaks(pass);
    } else {
        decideAllCandidates(children, pass, WhitespaceDecision::Preserve);
    }
}

void ContainerNode::decideLineBreaks(FormatPass& pass) const {
    switch (pass.getConfig()->getLineBreakBehavior(kind)) {
    case LineBreakBehavior::SeparateLines:
        decideAllCandidates(children, pass, WhitespaceDecision::LineBreak);
        return;
    case LineBreakBehavior::AllowSingleLine:
        decideAllCandidates(children, pass,
                            fitsOnLine(pass) ? WhitespaceDecision::NoLineBreak
                                             : WhitespaceDecision::LineBreak);
        return;
    case LineBreakBehavior::AllowMultiplePerLine:
        fillLines(pass);
    }
}

bool ContainerNode::fitsOnLine(FormatPass& pass) const {
    const auto width = getInlineWidth(pass.getConfig());
    return width && pass.getPreviousEndColumn(*getFirstLeaf()) + *width <= pass.getConfig()->getColumnLimit();
}

/// Puts as many items on a line as fit, and makes no attempt to balance the lines:
///
///     total = alpha + beta ...          not:  total = alpha ...
///         + gamma                                 + beta + gamma
///
/// An inner container is measured as if it stood on one line, even if it breaks when its own turn comes. What
/// can't be measured, a comment say, forces a break at the last candidate in front of it but adds nothing to
/// the column. After an overflow with no candidate the next candidate breaks at once.
void ContainerNode::fillLines(FormatPass& pass) const {
    LineFiller filler(pass, pass.getPreviousEndColumn(*getFirstLeaf()));
    for (const TextNode* child : children) {
        filler.add(*child);
    }
    filler.finish();
}

std::u16string ContainerNode::getName() const {
    return u"ContainerNode_[" + children.front()->getName() + u"]_[" + children.back()->getName() + u"]";
}

DebugTable ContainerNode::getDebugTable() const {
    return makeGroupTable(children, u"Container");
}

std::optional<std::uint64_t> ContainerNode::getInlineWidth(std::shared_ptr<FormattingConfig> config) const {
    std::uint64_t sum = 0;
    for (const TextNode* child : children) {
        const auto width = child->getInlineWidth(config);
        if (!width) {
            return std::nullopt;
        }
        sum += *width;
    }
    return sum;
}

LeafNode* ContainerNode::getFirstLeaf() const {
    TextNode* node = children.front();
    while (const ContainerNode* container = node->asContainer()) {
        node = container->children.front();
    }
    return static_cast<LeafNode*>(node);
}

std::optional<LeafNode*> ContainerNode::getLeafBefore() const {
    return getFirstLeaf()->getPrevious();
}

} // namespace ca::formatting
