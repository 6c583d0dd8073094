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
    states.reserve(nodes.size());
    endColumns.reserve(nodes.size());
    breakDecisions.reserve(nodes.size() / 4); // more than most trees have: see NodeHash
    indentations.reserve(nodes.size() / 16);
    for (const FormatNode* node : nodes) {
        states.emplace(node, NodeState::Untouched);
    }
    for (FormatNode* node : nodes) {
        solve(node);
    }
    return joinLeaves();
}

/// Runs a node that is in the tree, and before it whatever it needs. A dependency that is pending when it is
/// found stays so: it stands below on the stack, which makes a cycle, or waits for one, or isn't in the tree.
/// So does the node itself then.
void FormatPass::solve(FormatNode* first) {
    start(first);
    while (!waitingNodes.empty()) {
        FormatNode* node = waitingNodes.back();
        Dependencies& dependencies = pendingDependencies.at(node);
        dropSatisfied(dependencies);
        if (!dependencies.empty() && getState(*dependencies.begin()) == NodeState::Untouched) {
            start(*dependencies.begin());
            continue;
        }
        waitingNodes.pop_back();
        if (dependencies.empty()) {
            pendingDependencies.erase(node);
            states.at(node) = NodeState::HasRun;
            format(node);
        }
    }
}

/// Runs the node if all that it needs has run, otherwise puts it on the stack. Does nothing the second time.
void FormatPass::start(FormatNode* node) {
    NodeState& state = states.at(node);
    if (state != NodeState::Untouched) {
        return;
    }
    auto dependencies = node->getDependencies();
    if (std::all_of(dependencies.begin(), dependencies.end(),
                    [this](FormatNode* dependency) { return hasRun(dependency); })) {
        state = NodeState::HasRun;
        format(node);
        return;
    }
    state = NodeState::Pending;
    pendingDependencies.emplace(node, std::move(dependencies));
    waitingNodes.push_back(node);
}

/// Takes out dependencies that have run, up to one that hasn't.
void FormatPass::dropSatisfied(Dependencies& dependencies) {
    while (!dependencies.empty() && hasRun(*dependencies.begin())) {
        dependencies.erase(dependencies.begin());
    }
}

/// Counts as a visit of the edge to `dependency`.
bool FormatPass::hasRun(const FormatNode* dependency) {
    ++effort.edgesVisited;
    return getState(dependency) == NodeState::HasRun;
}

/// What isn't in the tree never runs.
FormatPass::NodeState FormatPass::getState(const FormatNode* node) const {
    const auto entry = states.find(node);
    return entry != states.end() ? entry->second : NodeState::Pending;
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
