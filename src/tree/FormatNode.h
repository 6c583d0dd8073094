#pragma once

#include "tree/DebugTable.h"

#include <cstdint>
#include <string>
#include <unordered_set>

namespace ca::formatting {

class FormatPass;

/// Which of this library's classes a node is exactly. Its operations may then be called without the table of
/// virtual operations, and so without the sets and strings that these return. A class derived from one of
/// them is `Other`, since it may override any operation.
enum class ExactClass : std::uint8_t {
    Other,
    Indent, ///< any of the six levels
    Container,
    Token,
    BinaryOperationWhitespace,
    Comment,
    AlignedComment,
    LineSeparatorWhitespace,
    NecessaryWhitespace,
    UnnecessaryWhitespace,
};

/// A piece of a format tree. It knows how to compute its own part of the result, but not when: it names the
/// nodes whose results it needs, and the pass calls it when those have run.
///
/// Nodes are owned by their tree, point at each other freely and hold no results. All that format() computes
/// goes into the tables of the pass, so one tree can serve several passes, one after the other.
class FormatNode {
public:
    FormatNode() = default;
    FormatNode(const FormatNode&) = delete;
    FormatNode& operator=(const FormatNode&) = delete;
    virtual ~FormatNode() = default;

    /// The nodes that must have run before this one.
    virtual std::unordered_set<FormatNode*> getDependencies() const = 0;

    /// Computes this node's entries in the tables of the pass. Throws std::out_of_range if a result that
    /// the node needs isn't there.
    virtual void format(FormatPass& pass) = 0;

    /// The name in debug dumps. Not unique.
    virtual std::u16string getName() const = 0;

    /// The node and everything under it as rows of a debug dump.
    virtual DebugTable getDebugTable() const = 0;

    /// The node's place in the list of nodes of the tree that it was made for, from 0; `noNumber` for a node
    /// that was made for none. A node of another tree may have the same number.
    std::uint32_t getNumber() const { return number; }
    static constexpr std::uint32_t noNumber = UINT32_MAX;

    ExactClass getExactClass() const { return exactClass; }

    /// Called once, by whoever makes the node and lists it.
    void enlist(std::uint32_t ownNumber, ExactClass ownClass) {
        number = ownNumber;
        exactClass = ownClass;
    }

    /// Whether the destructor has something to free, and so has to be called.
    bool hasOwnMemory() const { return storage.ownsMemory; }

protected:
    /// The branch of the class tree, which holds for derived classes too.
    enum class Family : std::uint8_t { Other, Indent, Container, Leaf, Whitespace };

    explicit FormatNode(Family family) : family(family) {}

    /// How a node keeps what it has. The flags of derived classes have room here, and only here.
    struct Storage {
        bool ownsMemory : 1 = false;
        bool isInSequence : 1 = false; ///< made in an open level: its place in the list of nodes says all
        bool hasLinks : 1 = false;     ///< of a LeafNode
        std::uint8_t run : 2 = 0;      ///< of a WhitespaceNode
    };

    static Family getFamily(const FormatNode& node) { return node.family; }
    static bool isInSequence(const FormatNode& node) { return node.storage.isInSequence; }
    static bool isLeafInSequence(const FormatNode& node) {
        return isInSequence(node) && (node.family == Family::Leaf || node.family == Family::Whitespace);
    }

    /// Whether the arena that the node was made in destroys it only if it is told to.
    bool isLeftInArena() const { return !storage.ownsMemory && exactClass != ExactClass::Other; }

private:
    // All of this has room beside the pointer to the table of virtual operations, in 16 bytes.
    std::uint32_t number = noNumber;
    ExactClass exactClass = ExactClass::Other;
    Family family = Family::Other;

protected:
    Storage storage;
};

static_assert(sizeof(FormatNode) <= 16);

/// The exact class that a node of the given class has; each class of the library has its own.
template <class NodeClass>
inline constexpr ExactClass exactClassOf = ExactClass::Other;

/// So many nodes to a bucket: a set of a few, which nearly all are, needs no table of buckets then, and
/// taking one would cost more than all that is done with the set.
constexpr float fewNodesLoadFactor = 16;

/// The debug table of a node that holds others: their rows in order, and a bracket with the label around.
template <class Nodes>
DebugTable makeGroupTable(const Nodes& nodes, std::u16string_view label) {
    DebugTable table;
    for (const FormatNode* node : nodes) {
        table.appendRows(node->getDebugTable());
    }
    if (table.getRowCount() == 0) {
        table.appendRow({u"<No Children>", u""});
    }
    table.addBracket(label);
    return table;
}

} // namespace ca::formatting
