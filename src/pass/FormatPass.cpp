#include "pass/FormatPass.h"

#include "tree/IndentNode.h"
#include "tree/WhitespaceNode.h"

#include <utility>

namespace ca::formatting {

FormatPass::FormatPass(std::shared_ptr<FormatTree> tree, std::shared_ptr<FormattingConfig> config)
    : tree(std::move(tree)), config(std::move(config)) {}

std::u16string FormatPass::run() {
    const auto& nodes = tree->getNodes();
    finishedNodes.reserve(nodes.size());
    endColumns.reserve(nodes.size());
    for (FormatNode* node : nodes) {
        solve(node);
    }
    return joinLeaves();
}

/// Runs a node, and before it whatever it needs. Nodes on a cycle, and those that wait for them, stay
/// pending.
void FormatPass::solve(FormatNode* first) {
    if (finishedNodes.contains(first) || pendingDependencies.contains(first)) {
        return;
    }
    start(first);
    while (!waitingNodes.empty()) {
        FormatNode* node = waitingNodes.back()->first;
        FormatNode* unsatisfied = findUnsatisfied(waitingNodes.back()->second);
        if (unsatisfied == nullptr) {
            waitingNodes.pop_back();
            finish(node);
            pendingDependencies.erase(node);
        } else if (pendingDependencies.contains(unsatisfied)) {
            waitingNodes.pop_back();
        } else {
            start(unsatisfied);
        }
    }
}

/// Runs the node if it waits for nothing, otherwise puts it on the stack.
void FormatPass::start(FormatNode* node) {
    auto dependencies = node->getDependencies();
    if (findUnsatisfied(dependencies) == nullptr) {
        finish(node);
        return;
    }
    const auto entry = pendingDependencies.emplace(node, std::move(dependencies)).first;
    waitingNodes.push_back(&*entry);
}

void FormatPass::finish(FormatNode* node) {
    ++effort.nodesRun;
    node->format(*this);
    finishedNodes.insert(node);
}

/// Some dependency that hasn't run, null if there is none. Those that have run are taken out.
FormatNode* FormatPass::findUnsatisfied(std::unordered_set<FormatNode*>& dependencies) {
    while (!dependencies.empty()) {
        const auto first = dependencies.begin();
        if (!finishedNodes.contains(*first)) {
            return *first;
        }
        ++effort.edgesVisited;
        dependencies.erase(first);
    }
    return nullptr;
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
