#pragma once

#include "config/FormattingConfig.h"
#include "config/OptionCache.h"
#include "pass/NodeResults.h"
#include "tree/FormatTree.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace ca::formatting {

class ContainerNode;
class IndentNode;
class LeafNode;
class TextNode;
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
/// the dependencies, so the pass takes the nodes as the tree lists them and runs before each what it
/// needs. Takes time and memory linear in nodes and dependencies, apart from what the nodes themselves do.
///
/// One pass serves one call on one thread. It keeps tree and options alive and holds every computed result;
/// nodes hold none, so the same tree can serve another pass afterwards.
///
/// Columns count 16-bit characters on the current line from 0. A look-up of a result that isn't there throws
/// std::out_of_range. Results are stored once: a second one for the same node is ignored.
class FormatPass {
public:
    /// The first leaf begins in the given column, which isn't 0 if the tree is of a part of a text.
    FormatPass(std::shared_ptr<FormatTree> tree, std::shared_ptr<FormattingConfig> config,
               std::uint64_t startColumn = 0);
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

    /// Column after the leaf.
    std::uint64_t getEndColumn(const LeafNode& leaf) const;

    /// Column after the leaf before `leaf`; for the first leaf the one that it begins in. 0 after a line end.
    std::uint64_t getPreviousEndColumn(const LeafNode& leaf) const;

    /// What a rewritten line start at this level consists of.
    std::u16string getIndentation(const IndentNode& level) const { return findIndentation(level); }

    /// The same for the level that the leaf belongs to; empty if it has none.
    std::u16string getLeafIndentation(const LeafNode& leaf) const { return findLeafIndentation(leaf); }

    /// `Preserve`, without a look-up, for a gap that is no candidate under the options.
    WhitespaceDecision getBreakDecision(const WhitespaceNode& gap) const;

    void setEndColumn(const LeafNode& leaf, std::uint64_t column);
    void setBreakDecision(const WhitespaceNode& gap, WhitespaceDecision decision);
    void setIndentation(const IndentNode& level, const std::u16string& indentation);

    // For the library's own nodes, which ask often: the same as above and as the nodes' operations, without
    // copies.

    OptionCache& getOptions() const { return options; }
    const std::u16string& findIndentation(const IndentNode& level) const;
    const std::u16string& findLeafIndentation(const LeafNode& leaf) const;

    /// The text that one level adds to the indentation.
    const std::u16string& getLevelText();

    /// Whether a line break may be chosen at the gap.
    bool isCandidate(const WhitespaceNode& gap) const;

    /// Width of the node on one line, in 16-bit characters; empty if it can't be told. The width of a
    /// container is computed once.
    std::optional<std::uint64_t> measure(const TextNode& node);

    /// How much solving a run did.
    struct Effort {
        std::size_t nodesRun = 0;
        std::size_t edgesVisited = 0; ///< times a dependency was looked at: three at most for each
    };

    const Effort& getEffort() const { return effort; }

private:
    using State = NodeResults::State;

    /// A node that waits for others: those at the end of `missing`, from the given place.
    struct Waiting {
        FormatNode* node;
        std::size_t firstMissing;
    };

    /// A container of which some children are measured.
    struct Measuring {
        const ContainerNode* container;
        std::size_t next = 0; ///< child
        std::uint64_t width = 0;
    };

    bool isLeafWithReadyContainer(const FormatNode& node) const;
    void solve(FormatNode* first);
    void start(FormatNode* node);
    void dropSatisfied(const Waiting& waiting);
    bool hasRun(const FormatNode* dependency);
    void formatNode(FormatNode* node);
    std::u16string joinLeaves();
    std::optional<std::uint64_t> findWidth(const TextNode& node);
    std::uint64_t measureContainer(const ContainerNode& container);

    std::shared_ptr<FormatTree> tree;
    std::shared_ptr<FormattingConfig> config;
    std::uint64_t startColumn;
    mutable OptionCache options;
    std::vector<FormatNode*> missing; ///< dependencies of the waiting nodes that may not have run
    std::vector<Waiting> waiting;     ///< a stack: each waits for the one above it
    std::vector<Measuring> measuring; ///< a stack: each is in the one below it

    /// Values are the columns of leaves, the widths of containers, and for levels the index of a text in
    /// `indentations`.
    NodeResults results;
    std::unordered_map<std::u16string, std::size_t> indentationNumbers;
    std::vector<const std::u16string*> indentations; ///< the keys of the map, each once
    std::optional<std::u16string> levelText;
    Effort effort;
};

} // namespace ca::formatting
