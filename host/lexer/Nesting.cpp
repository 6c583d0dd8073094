#include "Nesting.h"

#include "ca/lexer/KeywordTypes.h"

namespace ca::lexer {

void Brackets::open(TokenType bracket) {
    stack.push_back(getSlot(bracket));
    ++counts[stack.back()];
}

void Brackets::close(TokenType closingBracket) {
    const auto partner = static_cast<TokenType>(static_cast<int>(closingBracket) - 1);
    if (count(partner) == 0) {
        return;
    }
    std::uint8_t closed;
    do {
        closed = stack.back();
        --counts[closed];
        stack.pop_back();
    } while (closed != getSlot(partner));
}

void Brackets::pass(TokenType token) {
    if (isOpening(token)) {
        open(token);
    } else if (isClosing(token)) {
        close(token);
    }
}

void Brackets::clear() {
    stack.clear();
    counts.fill(0);
}

bool Blocks::holdsStatements() const {
    switch (getInnermost()) {
    case keyword::Classdef:
    case keyword::Properties:
    case keyword::Methods:
    case keyword::Events:
    case keyword::Enumeration:
    case keyword::Arguments:
        return false;
    default:
        return true;
    }
}

TokenType Blocks::close() {
    const TokenType keyword = stack.back().keyword;
    stack.pop_back();
    return keyword;
}

} // namespace ca::lexer
