#include "stages/TreeRows.h"

#include "stages/GapReasons.h"
#include "text/TextEncoding.h"

#include <ca/config/Config.h>
#include <ca/formatting/TreeOptions.h>
#include <config/FormattingSection.h>
#include <pass/FormatPass.h>
#include <tree/ContainerNode.h>
#include <tree/FormatTree.h>
#include <tree/IndentNode.h>
#include <tree/TokenNode.h>

#include <algorithm>
#include <limits>
#include <unordered_map>

namespace ombrel {

namespace {

using namespace ca::formatting;

/// The part of the source that a node is about.
struct Extent {
    std::size_t begin = std::numeric_limits<std::size_t>::max();
    std::size_t end = 0;

    void include(const Extent& other) {
        begin = std::min(begin, other.begin);
        end = std::max(end, other.end);
    }
};

/// The nodes of a tree with their extents. The leaves in the order of the text are the text.
class TreeExtents {
public:
    explicit TreeExtents(const FormatTree& tree) {
        std::size_t offset = 0;
        for (auto leaf = tree.getFirstLeaf(); leaf; leaf = (*leaf)->getNext()) {
            const Extent extent{offset, offset + getLength(**leaf)};
            offset = extent.end;
            extents[*leaf] = extent;
        }
    }

    /// Of a level that nothing belongs to: no text, at the start.
    Extent get(const FormatNode& node) const {
        const auto found = extents.find(&node);
        return found == extents.end() || found->second.begin > found->second.end ? Extent{0, 0}
                                                                                 : found->second;
    }

    void includeInParent(const FormatNode& parent, const FormatNode& node) {
        const Extent extent = extents[&node];
        extents[&parent].include(extent);
    }

private:
    static std::size_t getLength(const LeafNode& leaf) {
        const WhitespaceNode* gap = leaf.asWhitespace();
        return gap != nullptr ? gap->getOriginalText().size()
                              : static_cast<const TokenNode&>(leaf).getToken().lexeme.size();
    }

    std::unordered_map<const FormatNode*, Extent> extents;
};

Row makeLeafRow(const LeafNode& leaf, const TreeExtents& extents) {
    Row row;
    const Extent extent = extents.get(leaf);
    row.begin = extent.begin;
    row.end = extent.end;
    if (const WhitespaceNode* gap = leaf.asWhitespace()) {
        row.label = getGapClass(*gap);
        row.detail = encodeLossy(gap->getQuotedText());
    } else {
        const ca::lexer::Token& token = static_cast<const TokenNode&>(leaf).getToken();
        row.label = ca::lexer::getTokenTypeName(token.type);
        row.detail = encodeLossy(u"\"" + token.escapeLexeme() + u"\"");
    }
    return row;
}

/// A node of one of the two trees, before its children.
struct Entry {
    const FormatNode* node;
    std::size_t parent; ///< its place in the list; of the root its own
    std::uint32_t depth;
};

/// Lists the nodes below a root, each before its children. `appendChildren` adds those of a node to a list.
template <class AppendChildren>
std::vector<Entry> listNodes(const FormatNode& root, AppendChildren appendChildren) {
    std::vector<Entry> entries;
    std::vector<Entry> open{{&root, 0, 0}};
    std::vector<const FormatNode*> children;
    while (!open.empty()) {
        const Entry entry = open.back();
        open.pop_back();
        children.clear();
        appendChildren(*entry.node, children);
        for (auto child = children.rbegin(); child != children.rend(); ++child) {
            open.push_back({*child, entries.size(), entry.depth + 1});
        }
        entries.push_back(entry);
    }
    return entries;
}

void visitRows(const std::vector<Entry>& entries, TreeExtents& extents, const RowVisitor& visit,
               const std::function<std::string(const FormatNode&)>& getLabel) {
    for (std::size_t i = entries.size(); i-- > 1;) {
        extents.includeInParent(*entries[entries[i].parent].node, *entries[i].node);
    }
    for (const Entry& entry : entries) {
        const auto* leaf = dynamic_cast<const LeafNode*>(entry.node);
        Row row = leaf != nullptr ? makeLeafRow(*leaf, extents) : Row();
        row.depth = entry.depth;
        if (leaf == nullptr) {
            const Extent extent = extents.get(*entry.node);
            row.begin = extent.begin;
            row.end = extent.end;
            row.label = getLabel(*entry.node);
        }
        visit(row);
    }
}

std::string getContainerLabel(const FormatNode& node) {
    const auto kind = static_cast<const ContainerNode&>(node).getKind();
    return kind == FormattingConfig::ContainerKind::None
               ? "Container"
               : "Container " + std::string(constructWords[static_cast<std::size_t>(kind)]);
}

} // namespace

void visitLeafRows(const ParsedSource& source, const RowVisitor& visit) {
    const FormatTree tree(source, CommentLines::Aligned);
    const TreeExtents extents(tree);
    for (auto leaf = tree.getFirstLeaf(); leaf; leaf = (*leaf)->getNext()) {
        visit(makeLeafRow(**leaf, extents));
    }
}

void visitTextTreeRows(const ParsedSource& source, const RowVisitor& visit) {
    const FormatTree tree(source, CommentLines::Aligned);
    TreeExtents extents(tree);
    const auto entries = listNodes(*tree.getRootText(), [](const FormatNode& node, auto& children) {
        if (const auto* container = dynamic_cast<const ContainerNode*>(&node)) {
            const auto nodes = container->viewChildren();
            children.insert(children.end(), nodes.begin(), nodes.end());
        }
    });
    visitRows(entries, extents, visit, getContainerLabel);
}

void visitIndentTreeRows(const ParsedSource& source, const RowVisitor& visit) {
    const FormatTree tree(source, CommentLines::Aligned);
    TreeExtents extents(tree);
    const FormatNode* root = nullptr;
    for (const FormatNode* node : tree.getNodes()) {
        const auto* level = dynamic_cast<const IndentNode*>(node);
        root = root == nullptr && level != nullptr && !level->getParent() ? level : root;
    }
    const auto entries = listNodes(*root, [](const FormatNode& node, auto& children) {
        if (const auto* level = dynamic_cast<const IndentNode*>(&node)) {
            const auto members = level->getMembers();
            children.insert(children.end(), members.begin(), members.end());
        }
    });
    visitRows(entries, extents, visit, [](const FormatNode& node) { return encodeLossy(node.getName()); });
}

void visitDecisionRows(const ParsedSource& source, const std::shared_ptr<const ca::config::Config>& config,
                       const RowVisitor& visit) {
    const auto tree = std::make_shared<FormatTree>(source, CommentLines::Aligned);
    FormatPass pass(tree, config->get<FormattingConfig>());
    pass.run();
    const TreeExtents extents(*tree);
    for (auto leaf = tree->getFirstLeaf(); leaf; leaf = (*leaf)->getNext()) {
        if (const WhitespaceNode* gap = (*leaf)->asWhitespace()) {
            Row row = makeLeafRow(**leaf, extents);
            row.gap = explainGap(*gap, pass);
            visit(row);
        }
    }
}

} // namespace ombrel
