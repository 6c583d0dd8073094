#include "tree/TokenNode.h"

#include "pass/FormatPass.h"
#include "tree/DebugText.h"

namespace ca::formatting {

TokenNode::TokenNode(IndentNode* indent, const ca::lexer::Token* token) : LeafNode(indent), token(token) {}

void TokenNode::format(FormatPass& pass) {
    pass.setEndColumn(*this, pass.getPreviousEndColumn(*this) + token->lexeme.size());
}

std::u16string TokenNode::getName() const {
    auto stream = makeDebugStream();
    stream << u"Token_";
    ca::lexer::operator<<(stream, token->type);
    writePlace(stream, token->line, token->column);
    return stream.str();
}

DebugTable TokenNode::getDebugTable() const {
    DebugTable table;
    table.appendRow({getName(), u"\"" + token->escapeLexeme() + u"\""});
    return table;
}

std::optional<std::uint64_t> TokenNode::getInlineWidth(std::shared_ptr<FormattingConfig>) const {
    return getWidth();
}

std::u16string TokenNode::getText(FormatPass&) const {
    return token->lexeme;
}

} // namespace ca::formatting
