#include "format/TreeComparison.h"

#include <lf/astapi/visitFields.h>

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

namespace ombrel {

namespace {

using ca::astapi::CA;
using lf::astapi::NodeKind;
using SyntaxList = lf::astapi::NodeList<CA>;
using Validation = lf::astapi::ValidationSpec<CA>;

/// A field of a node, or one element of a field that is a list.
struct Part {
    enum class Kind { Child, Element, ListEnd, Number, Text };

    Kind kind;
    const SyntaxNode* owner;
    const SyntaxNode* child = nullptr; ///< null for an optional child that is absent
    std::int32_t number = 0;
    std::u16string_view text = {};
};

bool hasChild(const Part& part) {
    return part.child != nullptr;
}

/// Collects the parts of one node in order. Nodes of one kind have the same parts up to the first list whose
/// lengths differ, and there one has a list's end where the other has an element.
class PartCollector {
public:
    PartCollector(const SyntaxNode& owner, std::vector<Part>& parts) : owner(&owner), parts(parts) {}

    void child(const char*, const SyntaxNode* node) { parts.push_back({Part::Kind::Child, owner, node}); }

    void list(const char*, const SyntaxList& nodes) {
        for (const SyntaxNode* node : nodes) {
            parts.push_back({Part::Kind::Element, owner, node});
        }
        parts.push_back({Part::Kind::ListEnd, owner});
    }

    void words(const char* name, const SyntaxList& nodes) { list(name, nodes); }

    void number(const char*, std::int32_t value) {
        parts.push_back({Part::Kind::Number, owner, nullptr, value});
    }

    void flag(const char* name, bool value) { number(name, value ? 1 : 0); }

    void text(const char*, std::u16string_view value) {
        parts.push_back({Part::Kind::Text, owner, nullptr, 0, value});
    }

    void validation(const char* name, const Validation* spec) {
        flag(name, spec != nullptr);
        if (spec != nullptr) {
            list("dimensions", spec->dimensions);
            child("classType", spec->classType);
            list("validators", spec->validators);
        }
    }

private:
    const SyntaxNode* owner;
    std::vector<Part>& parts;
};

class TreeComparison {
public:
    TreeComparison(const MarkedTree& before, const MarkedTree& after, const Pairing& pairing,
                   std::vector<Difference>& differences)
        : before(before), after(after), pairing(pairing), differences(differences) {}

    void run() {
        expand(before.root, after.root);
        while (!work.empty()) {
            const auto [a, b] = work.back();
            work.pop_back();
            if (isSame(a, b) && hasChild(a)) {
                expand(*a.child, *b.child);
            }
        }
    }

private:
    using Kind = Difference::Kind;

    std::size_t findBefore(const SyntaxNode& node) const { return before.marks.find(node); }
    std::size_t findAfter(const SyntaxNode& node) const { return pairing.getBefore(after.marks.find(node)); }

    void expand(const SyntaxNode& a, const SyntaxNode& b) {
        beforeParts.clear();
        afterParts.clear();
        lf::astapi::visitFields(a, PartCollector(a, beforeParts));
        lf::astapi::visitFields(b, PartCollector(b, afterParts));
        const std::size_t start = work.size();
        pairParts();
        std::reverse(work.begin() + static_cast<std::ptrdiff_t>(start), work.end());
    }

    /// An element that one list has and the other hasn't gets an absent one as its partner.
    void pairParts() {
        auto b = afterParts.begin();
        for (const Part& a : beforeParts) {
            while (b != afterParts.end() && b->kind == Part::Kind::Element && isBefore(*b, a)) {
                work.emplace_back(Part{Part::Kind::Element, a.owner}, *b++);
            }
            const bool isLonger =
                a.kind == Part::Kind::Element &&
                (b == afterParts.end() || b->kind != Part::Kind::Element || isBefore(a, *b));
            if (isLonger) {
                work.emplace_back(a, Part{Part::Kind::Element, a.owner});
            } else if (b != afterParts.end()) {
                work.emplace_back(a, *b++);
            }
        }
    }

    bool isBefore(const Part& a, const Part& b) const {
        if (b.kind != Part::Kind::Element) {
            return true;
        }
        return a.owner == beforeParts.front().owner ? findBefore(*a.child) < findAfter(*b.child)
                                                    : findAfter(*a.child) < findBefore(*b.child);
    }

    bool isSame(const Part& a, const Part& b) {
        if (hasChild(a) && hasChild(b)) {
            return isSameNode(*a.child, *b.child);
        }
        if (hasChild(a)) {
            return fail({Kind::NodeTaken, findBefore(*a.child), a.child, a.owner});
        }
        if (hasChild(b)) {
            return fail({Kind::NodeAdded, findAfter(*b.child), b.child, b.owner});
        }
        if (a.kind != b.kind || a.number != b.number || a.text != b.text) {
            return fail({Kind::NodeChanged, findBefore(*a.owner), a.owner});
        }
        return true;
    }

    bool isSameNode(const SyntaxNode& a, const SyntaxNode& b) {
        const std::size_t mark = findBefore(a);
        if (a.kind != b.kind) {
            return fail({Kind::NodeTurned, mark, &a, &b});
        }
        const bool isOtherSeparator =
            a.kind == NodeKind::TokenLeaf2 && before.text[a.position] != after.text[b.position];
        return (mark == findAfter(b) && !isOtherSeparator) || fail({Kind::NodeChanged, mark, &a});
    }

    bool fail(Difference difference) {
        differences.push_back(difference);
        return false;
    }

    const MarkedTree& before;
    const MarkedTree& after;
    const Pairing& pairing;
    std::vector<Difference>& differences;
    std::vector<std::pair<Part, Part>> work;
    std::vector<Part> beforeParts;
    std::vector<Part> afterParts;
};

} // namespace

void compareTrees(const MarkedTree& before, const MarkedTree& after, const Pairing& pairing,
                  std::vector<Difference>& differences) {
    TreeComparison(before, after, pairing, differences).run();
}

} // namespace ombrel
