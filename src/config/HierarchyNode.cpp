#include "config/HierarchyNode.h"

#include <utility>

namespace ca::formatting {

namespace {

using Kind = FormattingConfig::ContainerKind;
using Children = std::unordered_map<std::u16string, HierarchyNode>;

HierarchyNode leaf(Kind kind) {
    return {std::nullopt, kind};
}

HierarchyNode group(Children children) {
    return {std::move(children), std::nullopt};
}

HierarchyNode makeStatements() {
    return group({{u"If", leaf(Kind::If)},
                  {u"While", leaf(Kind::While)},
                  {u"ForParfor", group({{u"For", leaf(Kind::For)}, {u"Parfor", leaf(Kind::Parfor)}})},
                  {u"Switch", leaf(Kind::Switch)},
                  {u"Case", leaf(Kind::Case)},
                  {u"Try", leaf(Kind::Try)},
                  {u"Spmd", leaf(Kind::Spmd)}});
}

HierarchyNode makeExpressions() {
    return group({{u"Exponent", leaf(Kind::Exponent)},
                  {u"MultiplyDivide", leaf(Kind::MultiplyDivide)},
                  {u"PlusMinus", leaf(Kind::PlusMinus)},
                  {u"Comparison", leaf(Kind::Comparison)},
                  {u"Logical", leaf(Kind::Logical)},
                  {u"Colon", leaf(Kind::Colon)}});
}

HierarchyNode makeLists() {
    return group({{u"ParenthesisList", leaf(Kind::ParenthesisList)},
                  {u"BracketList", leaf(Kind::BracketList)},
                  {u"BraceList", leaf(Kind::BraceList)}});
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
    return group({{u"Statements", makeStatements()},
                  {u"Expressions", makeExpressions()},
                  {u"Lists", makeLists()},
                  {u"Inheritance", leaf(Kind::Inheritance)}});
}

std::vector<Kind> getLeaves(const HierarchyNode& node) {
    std::vector<Kind> kinds;
    appendLeaves(node, kinds);
    return kinds;
}

} // namespace ca::formatting
