// The nodes are taken in the order in which the tree lists them, which is that of the text for leaves. A node
// whose dependencies have run runs at once: so do nearly all. For another one a stack holds what it still
// waits for, until that has run:
//
//     leaf ──waits for──► its container ──waits for──► the container around, and the levels of its gaps
//
// All results are in arrays by the number of the node, and what is asked of the library's own nodes most
// often goes past their virtual operations (directCalls.h).

#include "pass/FormatPass.h"

#include "pass/directCalls.h"

#include <stdexcept>
#include <utility>

namespace ca::formatting {

namespace {

constexpr std::uint64_t unknownWidth = UINT64_MAX;

template <class Value>
Value getChecked(const std::optional<Value>& value) {
    if (!value) {
        throw std::out_of_range("unordered_map::at");
    }
    return *value;
}

char16_t getCharacter(FormattingConfig::IndentCharacter character) {
    switch (character) {
    case FormattingConfig::IndentCharacter::Space:
        return u' ';
    case FormattingConfig::IndentCharacter::Tab:
        return u'\t';
    }
    return u'\0';
}

} // namespace

FormatPass::FormatPass(std::shared_ptr<FormatTree> tree, std::shared_ptr<FormattingConfig> config,
                       std::uint64_t startColumn)
    : tree(std::move(tree)), config(std::move(config)), startColumn(startColumn), options(*this->config),
      results(this->tree->getNodes()) {}

std::u16string FormatPass::run() {
    bool haveAllRun = true; // up to this place in the list
    for (FormatNode* node : tree->getNodes()) {
        if (results.getState(node) == State::Untouched) {
            if (haveAllRun && isLeafWithReadyContainer(*node)) {
                formatNode(node);
            } else {
                solve(node);
            }
        }
        haveAllRun = haveAllRun && results.getState(node) == State::HasRun;
    }
    return joinLeaves();
}

/// Whether nothing is missing for the node once all nodes before it in the list have run. So it is for most
/// nodes.
bool FormatPass::isLeafWithReadyContainer(const FormatNode& node) const {
    const LeafNode* leaf = asLeafInListOrder(node);
    if (leaf == nullptr) {
        return false;
    }
    const auto container = leaf->getParent();
    return !container || results.getState(*container) == State::HasRun;
}

/// Runs a node that is in the tree, and before it whatever it needs. A dependency that is pending when it is
/// found stays so: it is further down on the stack, which makes a cycle, or waits for one, or isn't in the
/// tree. So does the node itself then.
void FormatPass::solve(FormatNode* first) {
    start(first);
    while (!waiting.empty()) {
        const Waiting top = waiting.back();
        dropSatisfied(top);
        const bool isSatisfied = missing.size() == top.firstMissing;
        if (!isSatisfied && results.getState(missing.back()) == State::Untouched) {
            start(missing.back());
            continue;
        }
        missing.resize(top.firstMissing);
        waiting.pop_back();
        if (isSatisfied) {
            formatNode(top.node);
        }
    }
}

/// Runs the node if all that it needs has run, otherwise puts it on the stack. Does nothing the second time.
void FormatPass::start(FormatNode* node) {
    if (results.getState(node) != State::Untouched) {
        return;
    }
    const std::size_t firstMissing = missing.size();
    visitDependencies(*node, [this](FormatNode* dependency) {
        if (!hasRun(dependency)) {
            missing.push_back(dependency);
        }
    });
    if (missing.size() == firstMissing) {
        formatNode(node);
        return;
    }
    results.setState(*node, State::Pending);
    waiting.push_back({node, firstMissing});
}

/// Removes dependencies that have run, up to one that hasn't.
void FormatPass::dropSatisfied(const Waiting& top) {
    while (missing.size() > top.firstMissing && hasRun(missing.back())) {
        missing.pop_back();
    }
}

/// Counts as a visit of the edge to `dependency`.
bool FormatPass::hasRun(const FormatNode* dependency) {
    ++effort.edgesVisited;
    return results.getState(dependency) == State::HasRun;
}

void FormatPass::formatNode(FormatNode* node) {
    results.setState(*node, State::HasRun);
    ++effort.nodesRun;
    node->format(*this);
}

std::u16string FormatPass::joinLeaves() {
    std::u16string text;
    for (auto leaf = tree->getFirstLeaf(); leaf; leaf = (*leaf)->getNext()) {
        appendText(**leaf, *this, text);
    }
    return text;
}

std::uint64_t FormatPass::getEndColumn(const LeafNode& leaf) const {
    return getChecked(results.findValue(leaf));
}

std::uint64_t FormatPass::getPreviousEndColumn(const LeafNode& leaf) const {
    const auto previous = leaf.getPrevious();
    return previous ? getEndColumn(**previous) : startColumn;
}

const std::u16string& FormatPass::findIndentation(const IndentNode& level) const {
    return *indentations[getChecked(results.findValue(level))];
}

const std::u16string& FormatPass::findLeafIndentation(const LeafNode& leaf) const {
    static const std::u16string none;
    const IndentNode* level = leaf.getIndent();
    return level != nullptr ? findIndentation(*level) : none;
}

const std::u16string& FormatPass::getLevelText() {
    if (!levelText) {
        const char16_t character = getCharacter(config->getIndentCharacter());
        levelText.emplace(options.getIndentWidth(), character);
    }
    return *levelText;
}

bool FormatPass::isCandidate(const WhitespaceNode& gap) const {
    return formatting::isCandidate(gap, config, options);
}

std::optional<std::uint64_t> FormatPass::measure(const TextNode& node) {
    const auto known = findWidth(node);
    const std::uint64_t width = known ? *known : measureContainer(static_cast<const ContainerNode&>(node));
    return width != unknownWidth ? std::optional(width) : std::nullopt;
}

/// The width of a node, unknownWidth included; empty for a container that wasn't measured yet.
std::optional<std::uint64_t> FormatPass::findWidth(const TextNode& node) {
    return node.getExactClass() == ExactClass::Container
               ? results.findValue(node)
               : measureLeaf(node, config, options).value_or(unknownWidth);
}

/// Without recursion: an operation in brackets may be in nine others, and these in brackets again.
std::uint64_t FormatPass::measureContainer(const ContainerNode& container) {
    measuring.push_back({&container});
    while (true) {
        Measuring& current = measuring.back();
        const auto children = current.container->viewChildren();
        if (current.next != children.size() && current.width != unknownWidth) {
            const TextNode& child = *children[current.next];
            if (const auto width = findWidth(child)) {
                current.width = *width != unknownWidth ? current.width + *width : unknownWidth;
                ++current.next;
            } else {
                measuring.push_back({static_cast<const ContainerNode*>(&child)});
            }
            continue;
        }
        const std::uint64_t width = current.width;
        results.storeValue(*current.container, width);
        measuring.pop_back();
        if (measuring.empty()) {
            return width;
        }
    }
}

WhitespaceDecision FormatPass::getBreakDecision(const WhitespaceNode& gap) const {
    return isCandidate(gap) ? static_cast<WhitespaceDecision>(getChecked(results.findDecision(gap)))
                            : WhitespaceDecision::Preserve;
}

void FormatPass::setEndColumn(const LeafNode& leaf, std::uint64_t column) {
    results.storeValue(leaf, column);
}

void FormatPass::setBreakDecision(const WhitespaceNode& gap, WhitespaceDecision decision) {
    results.storeDecision(gap, static_cast<std::uint32_t>(decision));
}

/// Levels share their texts, of which there are few.
void FormatPass::setIndentation(const IndentNode& level, const std::u16string& indentation) {
    const auto [entry, isNew] = indentationNumbers.try_emplace(indentation, indentations.size());
    if (isNew) {
        indentations.push_back(&entry->first);
    }
    results.storeValue(level, entry->second);
}

} // namespace ca::formatting
