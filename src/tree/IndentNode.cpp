// A level has a name that hardly anybody asks for, and members that only a dump walks over, and there are as
// many levels as operators in a formula-heavy text. So the name is made on demand, and so are the members,
// from the list of the tree's nodes in order of creation:
//
//     level, leaf, level inside, its leaves ..., container, leaf, | what comes after the level
//
// Containers belong to no level. A node that is appended by hand is kept in a vector.

#include "tree/IndentNode.h"

#include "pass/FormatPass.h"
#include "tree/AstNodeAllocator.h"
#include "tree/DebugText.h"
#include "tree/NodeHome.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace ca::formatting {

IndentNode::IndentNode(std::u16string name) : FormatNode(Family::Indent), label{u""} {
    makeExtras().name = std::move(name);
}

IndentNode::IndentNode(const LevelLabel& label) : FormatNode(Family::Indent), label(label) {}

IndentNode::IndentNode(IndentNode* parent, std::u16string name) : IndentNode(std::move(name)) {
    enter(parent);
}

IndentNode::IndentNode(IndentNode* parent, const LevelLabel& label) : IndentNode(label) {
    enter(parent);
}

/// Adds the level to its parent, whose list says it already if it is open.
void IndentNode::enter(IndentNode* outer) {
    parent = outer;
    storage.isInSequence = outer->isOpen();
    if (!storage.isInSequence) {
        outer->appendMember(this);
    }
}

IndentNode::~IndentNode() = default;

std::unordered_set<FormatNode*> IndentNode::getDependencies() const {
    if (parent == nullptr) {
        return {};
    }
    return {parent};
}

void IndentNode::format(FormatPass& pass) {
    static const std::u16string none;
    const std::u16string& base = parent != nullptr ? pass.findIndentation(*parent) : none;
    switch (getIndentChange(pass.getConfig())) {
    case IndentChange::Inherit:
        pass.setIndentation(*this, base);
        return;
    case IndentChange::AddLevel:
        pass.setIndentation(*this, base + pass.getLevelText());
    }
}

std::u16string IndentNode::getName() const {
    if (extras != nullptr && extras->name) {
        return *extras->name;
    }
    auto stream = makeDebugStream();
    stream << label.text;
    if (label.line != 0) {
        writePlace(stream, label.line, label.column);
    }
    return stream.str();
}

/// Skips what is in the levels inside, all of which follows them directly in the list.
std::vector<FormatNode*> IndentNode::getMembers() const {
    std::vector<FormatNode*> members;
    const std::size_t end = listEnd == 0 ? 0 : std::min<std::size_t>(listEnd, home->nodes.size());
    for (std::size_t i = std::size_t{getNumber()} + 1; i < end; ++i) {
        FormatNode* node = home->nodes[i];
        if (isInSequence(*node)) {
            members.push_back(node);
        }
        if (getFamily(*node) == Family::Indent) {
            const std::size_t innerEnd = static_cast<const IndentNode*>(node)->listEnd;
            i = std::max(i + 1, innerEnd) - 1;
        }
    }
    if (extras != nullptr) {
        members.insert(members.end(), extras->members.begin(), extras->members.end());
    }
    return members;
}

void IndentNode::appendMember(FormatNode* member) {
    makeExtras().members.push_back(member);
}

void IndentNode::appendMember(FormatNode& member) {
    appendMember(&member);
}

void IndentNode::close() {
    listEnd = static_cast<std::uint32_t>(home->nodes.size());
}

/// A level that was made in an arena has to be destroyed from now on.
IndentNode::Extras& IndentNode::makeExtras() {
    if (extras == nullptr) {
        auto own = std::make_unique<Extras>();
        if (home != nullptr && isLeftInArena()) {
            home->arena.addCleanUp([this] { this->~IndentNode(); });
        }
        extras = std::move(own);
        storage.ownsMemory = true;
    }
    return *extras;
}

} // namespace ca::formatting
