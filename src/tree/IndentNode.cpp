// A level has a name that hardly anybody asks for, and members that only a dump walks over, and there are as
// many levels as operators in a formula-heavy text. So the name is made on demand and the members are a
// linked list through the nodes themselves:
//
//     level ──first──► leaf ──► level inside ──► leaf ◄──last
//
// A node that is appended by hand might be in another list already. Then the list becomes a vector.

#include "tree/IndentNode.h"

#include "pass/FormatPass.h"
#include "tree/AstNodeAllocator.h"
#include "tree/DebugText.h"
#include "tree/LeafNode.h"

#include <utility>

namespace ca::formatting {

IndentNode::IndentNode(std::u16string name) : FormatNode(Family::Indent), label{u""} {
    makeExtras().name = std::move(name);
}

IndentNode::IndentNode(const LevelLabel& label) : FormatNode(Family::Indent), label(label) {}

IndentNode::IndentNode(IndentNode* parent, std::u16string name) : IndentNode(std::move(name)) {
    this->parent = parent;
    parent->linkMember(this);
}

IndentNode::IndentNode(IndentNode* parent, const LevelLabel& label) : IndentNode(label) {
    this->parent = parent;
    parent->linkMember(this);
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

std::vector<FormatNode*> IndentNode::getMembers() const {
    if (extras != nullptr && extras->members) {
        return *extras->members;
    }
    std::vector<FormatNode*> members;
    for (FormatNode* member = firstMember; member != nullptr; member = getNextMember(member)) {
        members.push_back(member);
    }
    return members;
}

void IndentNode::appendMember(FormatNode* member) {
    auto members = getMembers();
    members.push_back(member);
    makeExtras().members = std::move(members);
}

void IndentNode::appendMember(FormatNode& member) {
    appendMember(&member);
}

/// A level that was made in an arena has to be destroyed from now on.
IndentNode::Extras& IndentNode::makeExtras() {
    if (extras == nullptr) {
        extras = std::make_unique<Extras>();
        setOwnMemory();
        if (arena != nullptr) {
            arena->addCleanUp([this] { this->~IndentNode(); });
        }
    }
    return *extras;
}

void IndentNode::linkMember(FormatNode* member) {
    if (extras != nullptr && extras->members) {
        extras->members->push_back(member);
        return;
    }
    (lastMember != nullptr ? getNextMember(lastMember) : firstMember) = member;
    lastMember = member;
}

/// Only levels and leaves are ever linked.
FormatNode*& IndentNode::getNextMember(FormatNode* member) {
    return getFamily(*member) == Family::Indent ? static_cast<IndentNode*>(member)->nextMember
                                                : static_cast<LeafNode*>(member)->nextMember;
}

} // namespace ca::formatting
