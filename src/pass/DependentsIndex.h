#pragma once

#include "pass/NodeTable.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ca::formatting {

class FormatNode;

/// Answers who waits for a node. All dependencies stand in one list; those that lead to the same node are
/// chained, newest first.
class DependentsIndex {
public:
    /// `memory` outlives the index.
    DependentsIndex(std::size_t nodeCount, std::pmr::memory_resource* memory) : newestEdges(memory) {
        newestEdges.reserve(nodeCount);
        edges.reserve(2 * nodeCount);
    }

    void add(const FormatNode* dependency, FormatNode* waiting) {
        auto& newest = newestEdges.try_emplace(dependency, noEdge).first->second;
        edges.push_back({waiting, newest});
        newest = edges.size() - 1;
    }

    /// Calls `visit` with each node that waits for `dependency`.
    template <class Visitor>
    void visitWaiting(const FormatNode* dependency, Visitor&& visit) const {
        const auto newest = newestEdges.find(dependency);
        if (newest == newestEdges.end()) {
            return;
        }
        for (std::size_t edge = newest->second; edge != noEdge; edge = edges[edge].older) {
            visit(edges[edge].waiting);
        }
    }

private:
    static constexpr std::size_t noEdge = SIZE_MAX;

    struct Edge {
        FormatNode* waiting;
        std::size_t older; ///< the edge before this one with the same dependency
    };

    NodeTable<std::size_t> newestEdges;
    std::vector<Edge> edges;
};

} // namespace ca::formatting
