#pragma once

#include "config/FormattingConfig.h"
#include "pass/NodeTable.h"
#include "tree/FormatTree.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace ca::formatting {

class IndentNode;
class LeafNode;
class WhitespaceNode;

/// What becomes of a gap where a line break may be chosen.
enum class WhitespaceDecision : std::uint32_t {
    Preserve = 0,    ///< line breaking takes no part: the gap is rendered from its items
    LineBreak = 1,   ///< a line break goes here
    NoLineBreak = 2, ///< the fixed one-line text goes here
};

/// Runs each node of a finished tree once, in dependency order, and joins the text of the leaves.
///
/// The pass has no formatting rules of its own. Every node names the nodes whose results it needs; the pass
/// runs it when those have run and keeps what it computes. The result is the same in any order that honours
/// the dependencies, so the pass takes the nodes as the tree lists them and runs in front of each what it
/// needs. Takes time and memory linear in nodes and dependencies, apart from what the nodes themselves do.
///
/// One pass serves one call on one thread. It keeps tree and options alive and holds every computed result;
/// nodes hold none, so the same tree can serve another pass afterwards.
///
/// Columns count 16-bit characters on the current line from 0. A look-up of a result that isn't there throws
/// std::out_of_range. Results are stored once: a second one for the same node is dropped without a sign.
class FormatPass {
public:
    FormatPass(std::shared_ptr<FormatTree> tree, std::shared_ptr<FormattingConfig> config);
    FormatPass(const FormatPass&) = delete;
    FormatPass& operator=(const FormatPass&) = delete;

    /// The formatted text. To be called once.
    ///
    /// Nodes on a cycle of dependencies, and those that wait for them or for a node that isn't in the tree,
    /// never run, and that is no error in itself. Throws std::out_of_range if a leaf or a node that ran asks
    /// for a result that was never stored: a fault in some node's getDependencies(), whatever the source text
    /// was.
    std::u16string run();

    std::shared_ptr<FormattingConfig> getConfig() const { return config; }

    /// Column behind the leaf.
    std::uint64_t getEndColumn(const LeafNode& leaf) const;

    /// Column behind the leaf in front of `leaf`; 0 for the first leaf and behind a line end.
    std::uint64_t getPreviousEndColumn(const LeafNode& leaf) const;

    /// What a rewritten line start at this level consists of.
    std::u16string getIndentation(const IndentNode& level) const;

    /// The same for the level that the leaf belongs to; empty if it has none.
    std::u16string getLeafIndentation(const LeafNode& leaf) const;

    /// `Preserve`, without a look-up, for a gap that is no candidate under the options.
    WhitespaceDecision getBreakDecision(const WhitespaceNode& gap) const;

    void setEndColumn(const LeafNode& leaf, std::uint64_t column);
    void setBreakDecision(const WhitespaceNode& gap, WhitespaceDecision decision);
    void setIndentation(const IndentNode& level, const std::u16string& indentation);

    /// How much solving a run did.
    struct Effort {
        std::size_t nodesRun = 0;
        std::size_t edgesVisited = 0; ///< times a dependency was looked at: three at most for each
    };

    const Effort& getEffort() const { return effort; }

private:
    enum class NodeState : std::uint8_t { Untouched, Pending, HasRun };
    using Dependencies = std::unordered_set<FormatNode*>;

    void solve(FormatNode* first);
    void start(FormatNode* node);
    void dropSatisfied(Dependencies& dependencies);
    bool hasRun(const FormatNode* dependency);
    NodeState getState(const FormatNode* node) const;
    void format(FormatNode* node);
    std::u16string joinLeaves();

    std::shared_ptr<FormatTree> tree;
    std::shared_ptr<FormattingConfig> config;
    PassMemory memory;                   ///< of the entries of the tables that only grow
    NodeTable<NodeState> states{memory}; ///< of all nodes of the tree
    /// For each pending node, what it may still wait for.
    std::unordered_map<FormatNode*, Dependencies> pendingDependencies;
    std::vector<FormatNode*> waitingNodes; ///< a stack: each waits for the one above it
    NodeTable<std::u16string> indentations{memory};
    NodeTable<std::uint64_t> endColumns{memory};
    NodeTable<WhitespaceDecision> breakDecisions{memory};
    Effort effort;
};

} // namespace ca::formatting
