#pragma once

#include "pass/NodeTable.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace ca::formatting {

/// Answers who waits for a node. All dependencies stand in one list, as edges that are chained by bucket, the
/// newest first. Nothing is looked up to add one, and to visit those of a node means to walk the chain of its
/// bucket past the few that lead to others.
///
/// An edge leads straight to an entry of the table of pending nodes, which therefore must not grow beyond
/// what was reserved for it.
class DependentsIndex {
public:
    using Waiting = PendingTable::iterator;

    explicit DependentsIndex(std::size_t nodeCount) : newestEdges(std::bit_ceil(nodeCount + 1), noEdge) {
        edges.reserve(3 * nodeCount);
    }

    void add(const FormatNode* dependency, Waiting waiting) {
        auto& newest = newestEdges[getBucket(dependency)];
        edges.push_back({dependency, waiting, newest});
        newest = edges.size() - 1;
    }

    /// Calls `visit` with the entry of each node that waits for `dependency`.
    template <class Visitor>
    void visitWaiting(const FormatNode* dependency, Visitor&& visit) const {
        for (std::size_t i = newestEdges[getBucket(dependency)]; i != noEdge; i = edges[i].older) {
            if (edges[i].dependency == dependency) {
                visit(edges[i].waiting);
            }
        }
    }

private:
    static constexpr std::size_t noEdge = SIZE_MAX;

    struct Edge {
        const FormatNode* dependency;
        Waiting waiting;
        std::size_t older; ///< the edge before this one in the same bucket
    };

    /// The number of buckets is a power of two.
    std::size_t getBucket(const FormatNode* node) const {
        return NodeHash()(node) & (newestEdges.size() - 1);
    }

    std::vector<std::size_t> newestEdges; ///< of each bucket
    std::vector<Edge> edges;
};

} // namespace ca::formatting
