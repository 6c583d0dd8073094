#include "tree/LeafNode.h"

#include "tree/ContainerNode.h"
#include "tree/IndentNode.h"

namespace ca::formatting {

LeafNode::LeafNode(IndentNode* indent) : indent(indent) {
    indent->appendMember(this);
}

/// A list of known length gets a table of just that size, and there is one for each leaf.
std::unordered_set<FormatNode*> LeafNode::getDependencies() const {
    if (previous && parent) {
        return {*previous, *parent};
    }
    if (previous) {
        return {*previous};
    }
    if (parent) {
        return {*parent};
    }
    return {};
}

} // namespace ca::formatting
