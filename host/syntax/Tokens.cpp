#include "syntax/Parser.h"

namespace ca::syntax {

namespace {

/// Opening brackets have every other number, each one less than its partner.
TokenType getPartner(TokenType open) {
    return static_cast<TokenType>(static_cast<int>(open) + 1);
}

} // namespace

bool Parser::isAtSeparator() const {
    const TokenType type = cursor.getType();
    return type == lineEnd || type == TokenType::Semicolon || type == TokenType::Comma;
}

bool Parser::skipIf(TokenType wanted) {
    if (!isAt(wanted)) {
        return false;
    }
    cursor.advance();
    return true;
}

void Parser::skipSeparators() {
    while (isAtSeparator()) {
        cursor.advance();
    }
}

void Parser::expectAssign(std::u16string_view what) {
    if (!skipIf(TokenType::Assign)) {
        failExpected(u"'=' after " + std::u16string(what));
    }
}

CodeToken Parser::openBracket() {
    brackets.push_back(cursor.get());
    return cursor.advance();
}

void Parser::closeBracket(const CodeToken& open) {
    if (!isAt(getPartner(open.type))) {
        failIfUnrecognized();
        failUnclosed(open);
    }
    cursor.advance();
    brackets.pop_back();
}

void Parser::failUnclosed(const CodeToken& open) {
    const auto spelling = std::u16string(1, u"()[]{}"[static_cast<int>(getPartner(open.type)) - 37]);
    fail(u"UnclosedBracket",
         u"expected '" + spelling + u"' to close the " + quoteToken(getToken(open)) + describePlace(open) +
             u" before " + quoteCurrent(),
         cursor.get());
}

} // namespace ca::syntax
