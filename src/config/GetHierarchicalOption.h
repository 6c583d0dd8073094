#pragma once

#include "config/FormattingConfig.h"
#include "config/GetMappedValue.h"
#include "config/HierarchyNode.h"

#include <ca/utils/JsonStages.h>
#include <resource_core/caConfig.h>

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace ca::formatting {

/// Stage that reads an option with a value for each construct. At each point of the tree of names a string
/// stands for all constructs below that point, and an object gives each name of the group a value of its own:
///
///     "AllowSingleLine"
///
///     {"Statements": "SeparateLines", "Expressions": "AllowSingleLine", "Lists": "AllowSingleLine",
///      "Inheritance": "SeparateLines"}
///
/// An object has to name its whole group: it has no defaults, and {"Lists": "AllowSingleLine"} alone is
/// refused. A fault anywhere loses the whole option. All faults are recorded, not just the first.
template <class T>
struct GetHierarchicalOption {
    HierarchyNode node;                              ///< the point that is read
    std::unordered_map<std::u16string, T> strings;   ///< the values by their texts
    std::shared_ptr<resource_core::BaseMsgID> issue; ///< recorded for a string that isn't among them
};

/// The value of each construct.
template <class T>
using ConstructTable = std::unordered_map<FormattingConfig::ContainerKind, T>;

/// One string for all constructs below the point. At a leaf, whatever isn't a string is refused here too.
template <class T>
std::optional<ConstructTable<T>> readForAll(const ca::utils::JsonReaderValue<ca::utils::JsonValue>& in,
                                            const GetHierarchicalOption<T>& stage) {
    const auto value = in | GetMappedValue<T>{stage.strings, stage.issue};
    if (!value.value) {
        return std::nullopt;
    }
    ConstructTable<T> table;
    for (const FormattingConfig::ContainerKind kind : getLeaves(stage.node)) {
        table.emplace(kind, *value.value);
    }
    return table;
}

/// An object with a field for each name of a group.
template <class T>
std::optional<ConstructTable<T>> readGroup(const ca::utils::JsonReaderValue<ca::utils::JsonValue>& in,
                                           const GetHierarchicalOption<T>& stage) {
    using CodeAnalyzer::caConfig::PlaceholderError;
    ConstructTable<T> table;
    bool failed = false;
    std::unordered_set<std::u16string> missing;
    for (const auto& [name, child] : *stage.node.children) {
        missing.insert(name);
    }
    for (const auto& [name, field] : in.value->getObject().getFields()) {
        const auto child = stage.node.children->find(name);
        if (child == stage.node.children->end()) {
            in.template recordFieldIssue<PlaceholderError>(
                field, u"invalid field in GetHierarchicalOption: " + name);
            failed = true;
            continue;
        }
        missing.erase(name);
        const ca::utils::JsonReaderValue<ca::utils::JsonValue> childIn{in.reader, field.value, field.value};
        const auto part = childIn | GetHierarchicalOption<T>{child->second, stage.strings, stage.issue};
        if (part.value) {
            table.insert(part.value->begin(), part.value->end());
        } else {
            failed = true;
        }
    }
    for (const std::u16string& name : missing) {
        in.template recordIssue<PlaceholderError>(u"missing field: " + name);
    }
    return failed || !missing.empty() ? std::nullopt : std::optional(std::move(table));
}

/// The table is complete below the stage's point, or there is none.
template <class T>
ca::utils::JsonReaderValue<ConstructTable<T>> operator|(ca::utils::JsonReaderValue<ca::utils::JsonValue> in,
                                                        GetHierarchicalOption<T> stage) {
    ca::utils::JsonReaderValue<ConstructTable<T>> out{in.reader, in.anchor, std::nullopt};
    if (!in.value) {
        return out;
    }
    const auto kind = in.value->getKind();
    if (!stage.node.children || kind == ca::utils::JsonValue::StringKind) {
        out.value = readForAll(in, stage);
    } else if (kind == ca::utils::JsonValue::ObjectKind) {
        out.value = readGroup(in, stage);
    } else {
        in.template recordIssue<CodeAnalyzer::caConfig::PlaceholderError>(
            u"non String/Object in GetHierarchicalOption");
    }
    return out;
}

} // namespace ca::formatting
