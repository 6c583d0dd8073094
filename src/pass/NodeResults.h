#pragma once

#include "tree/FormatNode.h"

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace ca::formatting {

/// What a pass knows of each node: whether it has run, a value, and a decision.
///
/// Nodes of the tree have their entries in arrays, by number, and values of 32 bits in them. What is stored
/// for any other node, and larger values but the largest, are kept too, in a slower table. The first value
/// and the first decision of a node win; later ones are dropped.
class NodeResults {
public:
    enum class State : std::uint8_t { Untouched, Pending, HasRun };

    /// The nodes of the tree, which have to outlive this object.
    explicit NodeResults(const std::vector<FormatNode*>& nodes)
        : nodes(nodes), values(nodes.size()), marks(nodes.size()) {}

    /// Whether the node is one of the tree's. Null isn't.
    bool contains(const FormatNode* node) const {
        return node != nullptr && node->getNumber() < nodes.size() && nodes[node->getNumber()] == node;
    }

    /// What isn't in the tree never runs.
    State getState(const FormatNode* node) const {
        return contains(node) ? static_cast<State>(marks[node->getNumber()] & stateBits) : State::Pending;
    }

    /// The node has to be in the tree.
    void setState(const FormatNode& node, State state) {
        std::uint8_t& mark = marks[node.getNumber()];
        mark = static_cast<std::uint8_t>((mark & ~stateBits) | static_cast<std::uint8_t>(state));
    }

    void storeValue(const FormatNode& node, std::uint64_t value) {
        if (!contains(&node)) {
            strayValues.emplace(&node, value);
        } else if ((marks[node.getNumber()] & valueBit) == 0) {
            marks[node.getNumber()] |= valueBit;
            values[node.getNumber()] = shorten(node, value);
        }
    }

    std::optional<std::uint64_t> findValue(const FormatNode& node) const {
        if (!contains(&node)) {
            return find(strayValues, node);
        }
        const bool isThere = (marks[node.getNumber()] & valueBit) != 0;
        return isThere ? lengthen(node, values[node.getNumber()]) : std::nullopt;
    }

    /// Any number is a decision.
    void storeDecision(const FormatNode& node, std::uint32_t decision) {
        if (!contains(&node) || decision >= strayDecision) {
            if (!findDecision(node)) {
                strayDecisions.emplace(&node, decision);
                markDecision(node, strayDecision);
            }
        } else if (getDecisionMark(node) == 0) {
            markDecision(node, decision);
        }
    }

    std::optional<std::uint32_t> findDecision(const FormatNode& node) const {
        const std::uint32_t mark = contains(&node) ? getDecisionMark(node) : strayDecision + 1;
        if (mark == strayDecision + 1) {
            return find(strayDecisions, node);
        }
        return mark != 0 ? std::optional(mark - 1) : std::nullopt;
    }

private:
    // A mark has the state in bits 0 and 1, whether there is a value in bit 2, and in bits 4 to 7 nothing or
    // one more than the decision.
    static constexpr std::uint8_t stateBits = 3;
    static constexpr std::uint8_t valueBit = 4;
    static constexpr int decisionShift = 4;
    static constexpr std::uint32_t strayDecision = 14; ///< this one and larger ones are in the slower table

    static constexpr std::uint32_t largest = UINT32_MAX; ///< stands for the largest value of 64 bits
    static constexpr std::uint32_t strayValue = UINT32_MAX - 1;

    template <class Value>
    using StrayTable = std::unordered_map<const FormatNode*, Value>;

    template <class Value>
    static std::optional<Value> find(const StrayTable<Value>& table, const FormatNode& node) {
        const auto entry = table.find(&node);
        return entry != table.end() ? std::optional(entry->second) : std::nullopt;
    }

    std::uint32_t shorten(const FormatNode& node, std::uint64_t value) {
        if (value < strayValue || value == UINT64_MAX) {
            return static_cast<std::uint32_t>(value);
        }
        strayValues.emplace(&node, value);
        return strayValue;
    }

    std::optional<std::uint64_t> lengthen(const FormatNode& node, std::uint32_t value) const {
        if (value == strayValue) {
            return find(strayValues, node);
        }
        return value == largest ? UINT64_MAX : value;
    }

    std::uint32_t getDecisionMark(const FormatNode& node) const {
        return marks[node.getNumber()] >> decisionShift;
    }

    void markDecision(const FormatNode& node, std::uint32_t decision) {
        if (contains(&node)) {
            marks[node.getNumber()] |= static_cast<std::uint8_t>((decision + 1) << decisionShift);
        }
    }

    const std::vector<FormatNode*>& nodes;
    std::vector<std::uint32_t> values;
    std::vector<std::uint8_t> marks;
    StrayTable<std::uint64_t> strayValues;
    StrayTable<std::uint32_t> strayDecisions;
};

} // namespace ca::formatting
