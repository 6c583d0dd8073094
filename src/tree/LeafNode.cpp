#include "tree/LeafNode.h"

#include "tree/AstNodeAllocator.h"
#include "tree/ContainerNode.h"

#include <memory>

namespace ca::formatting {

LeafNode::LeafNode(IndentNode* indent, Family family) : TextNode(family), indent(indent) {
    if (indent->isOpen()) {
        storage.isInSequence = true;
    } else {
        auto own = std::make_unique<Links>(Links{indent});
        indent->appendMember(this);
        links = own.release();
        storage.hasLinks = true;
        storage.ownsMemory = true;
    }
}

LeafNode::~LeafNode() {
    if (storage.hasLinks) {
        delete links;
    }
}

std::unordered_set<FormatNode*> LeafNode::getDependencies() const {
    std::unordered_set<FormatNode*> dependencies;
    dependencies.max_load_factor(fewNodesLoadFactor);
    if (const auto previous = getPrevious()) {
        dependencies.insert(*previous);
    }
    if (const auto parent = getParent()) {
        dependencies.insert(*parent);
    }
    return dependencies;
}

/// A leaf that has none is in an arena, which destroys it only if it owns something.
LeafNode::Links& LeafNode::makeLinks() {
    if (!storage.hasLinks) {
        auto own = std::make_unique<Links>(Links{indent, findPrevious(), findNext()});
        if (isLeftInArena()) {
            indent->getHome()->arena.addCleanUp([this] { this->~LeafNode(); });
        }
        links = own.release();
        storage.hasLinks = true;
        storage.ownsMemory = true;
    }
    return *links;
}

} // namespace ca::formatting
