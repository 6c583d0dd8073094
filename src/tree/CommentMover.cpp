#include "tree/CommentMover.h"

#include <algorithm>
#include <utility>

namespace ca::formatting {

namespace {

using ca::lexer::Token;
using ca::lexer::TokenType;

std::u16string_view getIndentation(std::u16string_view line) {
    return line.substr(0, std::min(line.find_first_not_of(u" \t"), line.size()));
}

} // namespace

void CommentMover::step(const WhitespaceItem& item) {
    if (item.kind == WhitespaceItemKind::CommentItem) {
        stepComment(*item.token);
    } else {
        isBlockClosed = false;
    }
}

void CommentMover::stepComment(const Token& comment) {
    const bool isAfterBlock = std::exchange(isBlockClosed, false);
    const std::u16string_view lexeme = comment.lexeme;
    content = lexeme.substr(0, lexeme.find_first_of(u"\r\n"));
    hasLineEnd = content.size() < lexeme.size();
    isIndented = false;
    switch (comment.type) {
    case TokenType::LineComment:
        printBare(isAfterBlock);
        return;
    case TokenType::BlockCommentOpen:
        if (depth++ == 0) {
            blockIndentation = getIndentation(content);
            printBare(isAfterBlock);
            return;
        }
        break;
    case TokenType::BlockCommentBody:
        break;
    case TokenType::BlockCommentClose:
        isBlockClosed = --depth == 0;
        break;
    default:
        return;
    }
    printMoved();
}

void CommentMover::printBare(bool isAfterBlock) {
    if (isIndenting) {
        content.remove_prefix(getIndentation(content).size());
        isIndented = isAfterBlock;
    }
}

/// An empty line stays empty, and one further left than its block comment stays where it is.
void CommentMover::printMoved() {
    const bool isBlank = getIndentation(content).size() == content.size();
    if (isIndenting && !isBlank && content.starts_with(blockIndentation)) {
        content.remove_prefix(blockIndentation.size());
        isIndented = true;
    }
}

std::size_t CommentMover::getWidth() const {
    return (isIndented ? indentation.size() : 0) + content.size() + (hasLineEnd ? 1 : 0);
}

void CommentMover::append(std::u16string& text) const {
    if (isIndented) {
        text += indentation;
    }
    text += content;
    if (hasLineEnd) {
        text += u'\n';
    }
}

} // namespace ca::formatting
