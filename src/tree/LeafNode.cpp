#include "tree/LeafNode.h"

#include "tree/ContainerNode.h"
#include "tree/IndentNode.h"

namespace ca::formatting {

LeafNode::LeafNode(IndentNode* indent) : indent(indent) {
    indent->appendMember(this);
}

std::unordered_set<FormatNode*> LeafNode::getDependencies() const {
    std::unordered_set<FormatNode*> dependencies;
    dependencies.max_load_factor(fewNodesLoadFactor);
    if (previous) {
        dependencies.insert(*previous);
    }
    if (parent) {
        dependencies.insert(*parent);
    }
    return dependencies;
}

} // namespace ca::formatting
