#include "pass/FormatPass.h"

#include "pass/DependentsIndex.h"
#include "tree/IndentNode.h"
#include "tree/WhitespaceNode.h"

#include <utility>

namespace ca::formatting {

FormatPass::FormatPass(std::shared_ptr<FormatTree> tree, std::shared_ptr<FormattingConfig> config)
    : tree(std::move(tree)), config(std::move(config)) {}

std::u16string FormatPass::run() {
    solve(seed());
    return joinLeaves();
}

DependentsIndex FormatPass::seed() {
    const auto& nodes = tree->getNodes();
    pendingDependencies.reserve(nodes.size());
    endColumns.reserve(nodes.size());
    DependentsIndex dependents(nodes.size());
    for (FormatNode* node : nodes) {
        const auto dependencies = node->getDependencies();
        if (dependencies.empty()) {
            readyNodes.push_back(node);
            continue;
        }
        const auto waiting = pendingDependencies.try_emplace(node, PassAllocator<FormatNode*>(memory)).first;
        waiting->second.max_load_factor(fewNodesLoadFactor);
        waiting->second.insert(dependencies.begin(), dependencies.end());
        for (const FormatNode* dependency : dependencies) {
            dependents.add(dependency, waiting);
        }
    }
    return dependents;
}

void FormatPass::solve(const DependentsIndex& dependents) {
    while (!readyNodes.empty()) {
        FormatNode* node = readyNodes.back();
        readyNodes.pop_back();
        ++effort.nodesRun;
        node->format(*this);
        dependents.visitWaiting(node, [&](PendingTable::iterator waiting) {
            ++effort.edgesVisited;
            satisfyDependency(waiting, node);
        });
    }
}

void FormatPass::satisfyDependency(PendingTable::iterator waiting, FormatNode* dependency) {
    auto& [node, dependencies] = *waiting;
    dependencies.erase(dependency);
    if (dependencies.empty()) {
        readyNodes.push_back(node);
        pendingDependencies.erase(waiting);
    }
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
