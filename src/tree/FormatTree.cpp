#include "tree/FormatTree.h"

#include "tree/IndentNode.h"
#include "tree/LeafNode.h"
#include "tree/TextNode.h"

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

} // namespace ca::formatting
