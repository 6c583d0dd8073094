#include "pass/FormatPass.h"

#include "tree/IndentNode.h"
#include "tree/WhitespaceNode.h"

#include <algorithm>
#include <utility>

namespace ca::formatting {

FormatPass::FormatPass(std::shared_ptr<FormatTree> tree, std::shared_ptr<FormattingConfig> config)
    : tree(std::move(tree)), config(std::move(config)) {}

std::u16string FormatPass::run() {
    const auto& nodes = tree->getNodes();
    startedNodes.reserve(nodes.size());
    endColumns.reserve(nodes.size());
    for (FormatNode* node : nodes) {
        solve(node);
    }
    return joinLeaves();
}

/// Runs a node, and before it whatever it needs. Nodes on a cycle, and those that wait for them, stay
/// pending.
void FormatPass::solve(FormatNode* first) {
    start(first);
    while (!waitingNodes.empty()) {
        FormatNode* node = waitingNodes.back();
        FormatNode* dependency = findUnsatisfied(pendingDependencies.at(node));
        if (dependency != nullptr && !pendingDependencies.contains(dependency)) {
            start(dependency);
            continue;
        }
        waitingNodes.pop_back();
        if (dependency == nullptr) {
            pendingDependencies.erase(node);
            format(node);
        }
    }
}

/// Runs the node if it waits for nothing, otherwise puts it on the stack. Does nothing the second time.
void FormatPass::start(FormatNode* node) {
    if (startedNodes.contains(node)) {
        return;
    }
    auto dependencies = node->getDependencies();
    const bool canRun = std::all_of(dependencies.begin(), dependencies.end(),
                                    [this](FormatNode* dependency) { return hasRun(dependency); });
    startedNodes.insert(node);
    if (canRun) {
        format(node);
        return;
    }
    pendingDependencies.emplace(node, std::move(dependencies));
    waitingNodes.push_back(node);
}

/// One of the dependencies that hasn't run, null if all have. Those found to have run are taken out.
FormatNode* FormatPass::findUnsatisfied(Dependencies& dependencies) {
    while (!dependencies.empty()) {
        const auto first = dependencies.begin();
        if (!hasRun(*first)) {
            return *first;
        }
        dependencies.erase(first);
    }
    return nullptr;
}

bool FormatPass::hasRun(FormatNode* dependency) {
    ++effort.edgesVisited;
    return startedNodes.contains(dependency) && !pendingDependencies.contains(dependency);
}

void FormatPass::format(FormatNode* node) {
    ++effort.nodesRun;
    node->format(*this);
}

std::u16string FormatPass::joinLeaves() {
    std::u16string text;
    for (auto leaf = tree->getFirstLeaf(); leaf; leaf = (*leaf)->getNext()) {
        text += (*leaf)->getText(*this);
    }
    return text;
}

std::uint64_t FormatPass::getEndColumn(const LeafNode& leaf) const {
    return endColumns.at(&leaf);
}

std::uint64_t FormatPass::getPreviousEndColumn(const LeafNode& leaf) const {
    const auto previous = leaf.getPrevious();
    return previous ? getEndColumn(**previous) : 0;
}

std::u16string FormatPass::getIndentation(const IndentNode& level) const {
    return indentations.at(&level);
}

std::u16string FormatPass::getLeafIndentation(const LeafNode& leaf) const {
    const IndentNode* level = leaf.getIndent();
    return level != nullptr ? getIndentation(*level) : std::u16string();
}

WhitespaceDecision FormatPass::getBreakDecision(const WhitespaceNode& gap) const {
    return gap.isLineBreakCandidate(config) ? breakDecisions.at(&gap) : WhitespaceDecision::Preserve;
}

void FormatPass::setEndColumn(const LeafNode& leaf, std::uint64_t column) {
    endColumns.emplace(&leaf, column);
}

void FormatPass::setBreakDecision(const WhitespaceNode& gap, WhitespaceDecision decision) {
    breakDecisions.emplace(&gap, decision);
}

void FormatPass::setIndentation(const IndentNode& level, const std::u16string& indentation) {
    indentations.emplace(&level, indentation);
}

} // namespace ca::formatting
