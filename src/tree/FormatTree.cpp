#include "tree/FormatTree.h"

#include "tree/ContainerNode.h"
#include "tree/IndentNode.h"
#include "tree/LeafNode.h"

namespace ca::formatting {

std::u16string FormatTree::dumpLeaves() const {
    DebugTable table;
    for (auto leaf = firstLeaf; leaf; leaf = (*leaf)->getNext()) {
        table.appendRows((*leaf)->getDebugTable());
    }
    return table.toString();
}

std::u16string FormatTree::dumpTextTree() const {
    return rootText->getDebugTable().toString();
}

std::u16string FormatTree::dumpIndentTree() const {
    return rootIndent->getDebugTable().toString();
}

void FormatTree::linkLeaves() {
    std::optional<LeafNode*> last;
    std::vector<TextNode*> open = {rootText};
    while (!open.empty()) {
        TextNode* node = open.back();
        open.pop_back();
        if (const ContainerNode* container = node->asContainer()) {
            const auto& children = container->getChildren();
            open.insert(open.end(), children.rbegin(), children.rend());
            continue;
        }
        auto* leaf = static_cast<LeafNode*>(node);
        if (last) {
            (*last)->setNext(leaf);
            leaf->setPrevious(*last);
        } else {
            firstLeaf = leaf;
        }
        last = leaf;
    }
}

} // namespace ca::formatting
