#include "config/HierarchyNode.h"

#include <ca/formatting/TreeOptions.h>

namespace ca::formatting {

namespace {

using Kind = FormattingConfig::ContainerKind;
HierarchyNode makeNode(const TreeConstruct& construct) {
    HierarchyNode node;
    if (!construct.isGroup()) {
        node.kind = static_cast<Kind>(construct.getNumber());
        return node;
    }
    node.children.emplace();
    for (const TreeConstruct& child : construct.children) {
        node.children->emplace(std::u16string(child.name.begin(), child.name.end()), makeNode(child));
    }
    return node;
}

void appendLeaves(const HierarchyNode& node, std::vector<Kind>& kinds) {
    if (!node.children) {
        kinds.push_back(node.kind.value());
        return;
    }
    for (const auto& [name, child] : *node.children) {
        appendLeaves(child, kinds);
    }
}

} // namespace

HierarchyNode makeHierarchy() {
    return makeNode(treeConstructs);
}

std::vector<Kind> getLeaves(const HierarchyNode& node) {
    std::vector<Kind> kinds;
    appendLeaves(node, kinds);
    return kinds;
}

} // namespace ca::formatting
