#pragma once

#include "config/FormattingConfig.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace ca::formatting {

/// A point in the tree of names that an option given for each construct is read against: a group of names, or
/// the construct at a leaf. Exactly one of the two fields is present.
struct HierarchyNode {
    std::optional<std::unordered_map<std::u16string, HierarchyNode>> children;
    std::optional<FormattingConfig::ContainerKind> kind;
};

/// The whole tree. Each construct but `None` has one leaf:
///
///     Statements    If, While, ForParfor (For, Parfor), Switch, Case, Try, Spmd
///     Expressions   Exponent, MultiplyDivide, PlusMinus, Comparison, Logical, Colon
///     Lists         ParenthesisList, BracketList, BraceList
///     Inheritance
HierarchyNode makeHierarchy();

/// The constructs of all leaves below a node, in no particular order.
std::vector<FormattingConfig::ContainerKind> getLeaves(const HierarchyNode& node);

} // namespace ca::formatting
