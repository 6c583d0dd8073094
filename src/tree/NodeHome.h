#pragma once

#include <vector>

namespace lf::astapi {
class AstNodeAllocator;
}

namespace ca::formatting {

class FormatNode;

/// Where the nodes of one tree are: the arena that they are made in, and the list of all of them in order of
/// creation. Outlives the nodes.
struct NodeHome {
    lf::astapi::AstNodeAllocator& arena;
    std::vector<FormatNode*>& nodes;
};

} // namespace ca::formatting
