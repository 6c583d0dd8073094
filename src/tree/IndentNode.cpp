#include "tree/IndentNode.h"

#include "pass/FormatPass.h"

#include <utility>

namespace ca::formatting {

namespace {

char16_t getCharacter(FormattingConfig::IndentCharacter character) {
    switch (character) {
    case FormattingConfig::IndentCharacter::Space:
        return u' ';
    case FormattingConfig::IndentCharacter::Tab:
        return u'\t';
    }
    return u'\0';
}

} // namespace

IndentNode::IndentNode(std::u16string name) : name(std::move(name)) {}

IndentNode::IndentNode(IndentNode* parent, std::u16string name) : parent(parent), name(std::move(name)) {
    parent->appendMember(this);
}

std::unordered_set<FormatNode*> IndentNode::getDependencies() const {
    if (!parent) {
        return {};
    }
    return {*parent};
}

void IndentNode::format(FormatPass& pass) {
    const std::u16string base = parent ? pass.getIndentation(**parent) : std::u16string();
    switch (getIndentChange(pass.getConfig())) {
    case IndentChange::Inherit:
        pass.setIndentation(*this, base);
        return;
    case IndentChange::AddLevel: {
        const char16_t character = getCharacter(pass.getConfig()->getIndentCharacter());
        pass.setIndentation(*this, base + std::u16string(pass.getConfig()->getIndentWidth(), character));
    }
    }
}

std::u16string IndentNode::getName() const {
    return name;
}

void IndentNode::appendMember(FormatNode* member) {
    members.push_back(member);
}

void IndentNode::appendMember(FormatNode& member) {
    members.push_back(&member);
}

} // namespace ca::formatting
