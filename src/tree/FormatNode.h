#pragma once

#include "tree/DebugTable.h"

#include <string>
#include <unordered_set>

namespace ca::formatting {

class FormatPass;

/// A piece of a format tree. It knows how to compute its own part of the result, but not when: it names the
/// nodes whose results it needs, and the pass calls it when those have run.
///
/// Nodes are owned by their tree, point at each other freely and hold no results. All that format() computes
/// goes into the tables of the pass, so one tree can serve several passes, one after the other.
class FormatNode {
public:
    FormatNode() = default;
    FormatNode(const FormatNode&) = delete;
    FormatNode& operator=(const FormatNode&) = delete;
    virtual ~FormatNode() = default;

    /// The nodes that must have run before this one.
    virtual std::unordered_set<FormatNode*> getDependencies() const = 0;

    /// Computes this node's entries in the tables of the pass. Throws std::out_of_range if a result that
    /// the node needs isn't there.
    virtual void format(FormatPass& pass) = 0;

    /// The name in debug dumps. Not unique.
    virtual std::u16string getName() const = 0;

    /// The node and everything under it as rows of a debug dump.
    virtual DebugTable getDebugTable() const = 0;
};

/// So many nodes to a bucket: a set of a few, which nearly all are, needs no table of buckets then, and
/// taking one would cost more than all that is done with the set.
constexpr float fewNodesLoadFactor = 16;

/// The debug table of a node that holds others: their rows in order, and a bracket with the label around.
template <class Nodes>
DebugTable makeGroupTable(const Nodes& nodes, std::u16string_view label) {
    DebugTable table;
    for (const FormatNode* node : nodes) {
        table.appendRows(node->getDebugTable());
    }
    if (table.getRowCount() == 0) {
        table.appendRow({u"<No Children>", u""});
    }
    table.addBracket(label);
    return table;
}

} // namespace ca::formatting
