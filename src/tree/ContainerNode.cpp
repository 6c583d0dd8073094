#include "tree/ContainerNode.h"

#include "pass/FormatPass.h"
#include "tree/AstNodeAllocator.h"
#include "tree/IndentNode.h"

#include <memory>

namespace ca::formatting {

using LineBreakBehavior = FormattingConfig::LineBreakBehavior;

namespace {

/// The child as a gap where a line break may be chosen, null if it isn't one.
const WhitespaceNode* getCandidate(const TextNode& child, FormatPass& pass) {
    const WhitespaceNode* whitespace = child.asWhitespace();
    return whitespace != nullptr && pass.isCandidate(*whitespace) ? whitespace : nullptr;
}

/// Fills lines with one candidate in hand, the last one seen, whose decision waits until it is known whether
/// what comes after it still fits.
class LineFiller {
public:
    LineFiller(FormatPass& pass, std::uint64_t startColumn)
        : pass(pass), limit(pass.getOptions().getColumnLimit()), column(startColumn) {}

    void add(const TextNode& child) {
        if (const WhitespaceNode* candidate = getCandidate(child, pass)) {
            finish();
            pending = candidate;
            pendingColumn = column;
        }
        const auto width = pass.measure(child);
        column += width.value_or(0);
        const bool fits = width && column <= limit;
        if (!fits && pending != nullptr) {
            breakLine();
        }
    }

    /// Nothing overflowed after the candidate in hand.
    void finish() {
        if (pending != nullptr) {
            pass.setBreakDecision(*pending, WhitespaceDecision::NoLineBreak);
            pending = nullptr;
        }
    }

private:
    /// What comes after the candidate moves to a line of its own.
    void breakLine() {
        pass.setBreakDecision(*pending, WhitespaceDecision::LineBreak);
        column -= pendingColumn + pass.measure(*pending).value_or(0);
        column += pass.findLeafIndentation(*pending).size();
        pending = nullptr;
    }

    FormatPass& pass;
    std::uint64_t limit;
    std::uint64_t column;
    const WhitespaceNode* pending = nullptr;
    std::uint64_t pendingColumn = 0;
};

} // namespace

ContainerNode::ContainerNode(FormattingConfig::ContainerKind kind, const std::vector<TextNode*>& children)
    : TextNode(Family::Container), kind(kind), childCount(static_cast<std::uint32_t>(children.size())) {
    storage.ownsMemory = childCount != 1;
    adopt(children, storage.ownsMemory ? new TextNode*[childCount] : nullptr);
}

ContainerNode::ContainerNode(FormattingConfig::ContainerKind kind, const ArenaChildren& children)
    : TextNode(Family::Container), kind(kind), childCount(static_cast<std::uint32_t>(children.nodes.size())) {
    void* memory = childCount != 1 ? children.arena.allocate(children.nodes.size_bytes()) : nullptr;
    adopt(children.nodes, static_cast<TextNode**>(memory));
}

ContainerNode::~ContainerNode() {
    if (hasOwnMemory()) {
        delete[] children;
    }
}

/// `copy` is for the list; an only child needs none.
void ContainerNode::adopt(std::span<TextNode* const> nodes, TextNode** copy) {
    if (copy != nullptr) {
        std::uninitialized_copy(nodes.begin(), nodes.end(), copy);
        children = copy;
    } else {
        onlyChild = nodes.front();
    }
    for (TextNode* child : nodes) {
        child->setParent(this);
    }
}

std::unordered_set<FormatNode*> ContainerNode::getDependencies() const {
    std::unordered_set<FormatNode*> dependencies;
    dependencies.max_load_factor(fewNodesLoadFactor);
    if (const auto parent = getParent()) {
        dependencies.insert(*parent);
    }
    if (const auto before = getLeafBefore()) {
        dependencies.insert(*before);
    }
    for (const TextNode* child : viewChildren()) {
        if (const WhitespaceNode* whitespace = child->asWhitespace()) {
            dependencies.insert(whitespace->getIndent());
        }
    }
    return dependencies;
}

void ContainerNode::format(FormatPass& pass) {
    if (pass.getOptions().getLineBreakingEnabled() && kind != FormattingConfig::ContainerKind::None) {
        decideLineBreaks(pass);
    } else {
        decideAllCandidates(pass, WhitespaceDecision::Preserve);
    }
}

void ContainerNode::decideAllCandidates(FormatPass& pass, WhitespaceDecision decision) const {
    for (const TextNode* child : viewChildren()) {
        if (const WhitespaceNode* candidate = getCandidate(*child, pass)) {
            pass.setBreakDecision(*candidate, decision);
        }
    }
}

void ContainerNode::decideLineBreaks(FormatPass& pass) const {
    switch (pass.getOptions().getLineBreakBehavior(kind)) {
    case LineBreakBehavior::SeparateLines:
        decideAllCandidates(pass, WhitespaceDecision::LineBreak);
        return;
    case LineBreakBehavior::AllowSingleLine:
        decideAllCandidates(pass, fitsOnLine(pass) ? WhitespaceDecision::NoLineBreak
                                                   : WhitespaceDecision::LineBreak);
        return;
    case LineBreakBehavior::AllowMultiplePerLine:
        fillLines(pass);
    }
}

bool ContainerNode::fitsOnLine(FormatPass& pass) const {
    const auto width = pass.measure(*this);
    return width && pass.getPreviousEndColumn(*getFirstLeaf()) + *width <= pass.getOptions().getColumnLimit();
}

/// Puts as many items on a line as fit, and makes no attempt to balance the lines:
///
///     total = alpha + beta ...          not:  total = alpha ...
///         + gamma                                 + beta + gamma
///
/// An inner container is measured as if it were on one line, even if it breaks when its own turn comes. What
/// can't be measured, a comment say, forces a break at the last candidate before it but adds nothing to
/// the column. After an overflow with no candidate the next candidate breaks at once.
void ContainerNode::fillLines(FormatPass& pass) const {
    LineFiller filler(pass, pass.getPreviousEndColumn(*getFirstLeaf()));
    for (const TextNode* child : viewChildren()) {
        filler.add(*child);
    }
    filler.finish();
}

std::u16string ContainerNode::getName() const {
    return u"ContainerNode_[" + viewChildren().front()->getName() + u"]_[" +
           viewChildren().back()->getName() + u"]";
}

DebugTable ContainerNode::getDebugTable() const {
    return makeGroupTable(viewChildren(), u"Container");
}

std::optional<std::uint64_t> ContainerNode::getInlineWidth(std::shared_ptr<FormattingConfig> config) const {
    std::uint64_t sum = 0;
    for (const TextNode* child : viewChildren()) {
        const auto width = child->getInlineWidth(config);
        if (!width) {
            return std::nullopt;
        }
        sum += *width;
    }
    return sum;
}

LeafNode* ContainerNode::getFirstLeaf() const {
    TextNode* node = viewChildren().front();
    while (const ContainerNode* container = node->asContainer()) {
        node = container->viewChildren().front();
    }
    return static_cast<LeafNode*>(node);
}

std::optional<LeafNode*> ContainerNode::getLeafBefore() const {
    return getFirstLeaf()->getPrevious();
}

} // namespace ca::formatting
