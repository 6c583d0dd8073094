#include "tree/LeafNode.h"

#include "tree/ContainerNode.h"
#include "tree/IndentNode.h"

namespace ca::formatting {

LeafNode::LeafNode(IndentNode* indent, Family family) : TextNode(family), indent(indent) {
    indent->linkMember(this);
}

std::unordered_set<FormatNode*> LeafNode::getDependencies() const {
    std::unordered_set<FormatNode*> dependencies;
    dependencies.max_load_factor(fewNodesLoadFactor);
    if (previous != nullptr) {
        dependencies.insert(previous);
    }
    if (const auto parent = getParent()) {
        dependencies.insert(*parent);
    }
    return dependencies;
}

} // namespace ca::formatting
