#include "format/TreeComparison.h"

#include <lf/astapi/visitFields.h>

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace ombrel {

namespace {

using ca::astapi::CA;
using lf::astapi::NodeKind;
using SyntaxList = lf::astapi::NodeList<CA>;
using Validation = lf::astapi::ValidationSpec<CA>;

/// A field of a node, or one element of a field that is a list.
struct Part {
    enum class Kind : std::uint8_t { Child, Element, ListEnd, Number, Text };

    Kind kind;
    std::int32_t number = 0;
    const SyntaxNode* child = nullptr; ///< null for an optional child that is absent
    std::size_t mark = 0;              ///< of the child, in the text before
    std::size_t ownMark = 0;           ///< of the child, in the text that it is in
    std::u16string_view text = {};
};

bool isElement(const Part& part) {
    return part.kind == Part::Kind::Element;
}

/// Collects the parts of one node in order. Nodes of one kind have the same parts up to the first list whose
/// lengths differ, and there one has a list's end where the other has an element.
class PartCollector {
public:
    /// `mark` is the one of the node. Without a pairing, the text is the one before.
    PartCollector(std::vector<Part>& parts, const Marks& marks, std::size_t mark, const Pairing* pairing)
        : parts(parts), marks(marks), lastMark(mark), pairing(pairing) {}

    void child(const char*, const SyntaxNode* node) { add(Part::Kind::Child, node); }

    void list(const char*, const SyntaxList& nodes) {
        for (const SyntaxNode* node : nodes) {
            add(Part::Kind::Element, node);
        }
        parts.push_back({Part::Kind::ListEnd});
    }

    void words(const char* name, const SyntaxList& nodes) { list(name, nodes); }

    void number(const char*, std::int32_t value) { parts.push_back({Part::Kind::Number, value}); }

    void flag(const char* name, bool value) { number(name, value ? 1 : 0); }

    void text(const char*, std::u16string_view value) {
        parts.push_back({Part::Kind::Text, 0, nullptr, 0, 0, value});
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
    void add(Part::Kind kind, const SyntaxNode* node) {
        if (node == nullptr) {
            parts.push_back({kind});
            return;
        }
        lastMark = marks.find(*node, lastMark);
        const std::size_t mark = pairing == nullptr ? lastMark : pairing->getBefore(lastMark);
        parts.push_back({kind, 0, node, mark, lastMark});
    }

    std::vector<Part>& parts;
    const Marks& marks;
    std::size_t lastMark; ///< the one that was found last
    const Pairing* pairing;
};

class TreeComparison {
public:
    TreeComparison(const MarkedTree& before, const MarkedTree& after, const Pairing& pairing,
                   std::vector<Difference>& differences)
        : before(before), after(after), pairing(pairing), differences(differences) {}

    void run() {
        work.push_back({&before.root, &after.root});
        while (!work.empty()) {
            const Pair pair = work.back();
            work.pop_back();
            if (pair.after == nullptr) {
                add({Kind::NodeTaken, pair.markBefore, pair.before, pair.owner});
            } else if (pair.before == nullptr) {
                add({Kind::NodeAdded, pair.markBefore, pair.after, pair.owner});
            } else {
                compareParts(pair);
            }
        }
    }

private:
    using Kind = Difference::Kind;

    /// Two nodes that are the same but for their parts, or a node that has no partner.
    struct Pair {
        const SyntaxNode* before;
        const SyntaxNode* after;
        std::size_t markBefore = 0;
        std::size_t markAfter = 0;         ///< if there are both
        const SyntaxNode* owner = nullptr; ///< if there is only one
    };

    void compareParts(const Pair& nodes) {
        beforeParts.clear();
        afterParts.clear();
        lf::astapi::visitFields(*nodes.before,
                                PartCollector(beforeParts, before.marks, nodes.markBefore, nullptr));
        lf::astapi::visitFields(*nodes.after,
                                PartCollector(afterParts, after.marks, nodes.markAfter, &pairing));
        const std::size_t start = work.size();
        pairParts(nodes);
        std::reverse(work.begin() + static_cast<std::ptrdiff_t>(start), work.end());
    }

    void pairParts(const Pair& nodes) {
        auto b = afterParts.begin();
        for (const Part& a : beforeParts) {
            for (; b != afterParts.end() && isElement(*b) && (!isElement(a) || b->mark < a.mark); ++b) {
                work.push_back({nullptr, b->child, b->mark, 0, nodes.after});
            }
            if (isElement(a) && (b == afterParts.end() || !isElement(*b) || a.mark < b->mark)) {
                work.push_back({a.child, nullptr, a.mark, 0, nodes.before});
            } else if (b != afterParts.end()) {
                compare(a, *b++, nodes);
            }
        }
    }

    void compare(const Part& a, const Part& b, const Pair& nodes) {
        if (a.child != nullptr && b.child != nullptr) {
            compareChildren(a, b);
        } else if (a.child != nullptr) {
            work.push_back({a.child, nullptr, a.mark, 0, nodes.before});
        } else if (b.child != nullptr) {
            work.push_back({nullptr, b.child, b.mark, 0, nodes.after});
        } else if (a.kind != b.kind || a.number != b.number || a.text != b.text) {
            add({Kind::NodeChanged, nodes.markBefore, nodes.before});
        }
    }

    void compareChildren(const Part& a, const Part& b) {
        if (a.child->kind != b.child->kind) {
            add({Kind::NodeTurned, a.mark, a.child, b.child});
        } else if (a.mark != b.mark || isOtherSeparator(*a.child, *b.child)) {
            add({Kind::NodeChanged, a.mark, a.child});
        } else {
            work.push_back({a.child, b.child, a.ownMark, b.ownMark});
        }
    }

    bool isOtherSeparator(const SyntaxNode& a, const SyntaxNode& b) const {
        return a.kind == NodeKind::TokenLeaf2 && before.text[a.position] != after.text[b.position];
    }

    void add(Difference difference) { differences.push_back(difference); }

    const MarkedTree& before;
    const MarkedTree& after;
    const Pairing& pairing;
    std::vector<Difference>& differences;
    std::vector<Pair> work;
    std::vector<Part> beforeParts;
    std::vector<Part> afterParts;
};

} // namespace

void compareTrees(const MarkedTree& before, const MarkedTree& after, const Pairing& pairing,
                  std::vector<Difference>& differences) {
    TreeComparison(before, after, pairing, differences).run();
}

} // namespace ombrel
