// Lists between brackets. Arguments are separated by commas alone. In a matrix or cell literal a run of
// separators is between two rows, and the users of the tree read such a run in two halves: first line
// ends and commas, then line ends and semicolons. A comma that is in neither half has to be an element:
//
//     [1,      [1;         one row each from 1 and from 2; in the second text the comma, which follows a
//      ,2]      ,2]        semicolon, is the first element of the row of 2

#include "syntax/NodeFactory.h"

#include <utility>

namespace ca::syntax {

namespace {

using namespace lf::astapi;

using lexer::isClosing;

/// Whether an element may start with this token.
bool startsElement(TokenType type) {
    switch (type) {
    case TokenType::NameToken27:
    case TokenType::NameToken28:
    case TokenType::NumberToken29:
    case TokenType::NumberToken30:
    case TokenType::NumberToken99:
    case TokenType::NumberToken100:
    case TokenType::CharacterLiteral:
    case TokenType::StringLiteral:
    case TokenType::EndIndex:
    case TokenType::OpenParenthesis:
    case TokenType::OpenSquareBracket:
    case TokenType::OpenBrace:
    case TokenType::PlusMinusOperator51:
    case TokenType::PlusMinusOperator52:
    case TokenType::PrefixOperator34:
    case TokenType::PrefixOperator45:
    case TokenType::At:
        return true;
    default:
        return false;
    }
}

} // namespace

/// Reads a bracketed list with commas between its parts into `pending`.
void Parser::parseArguments(Arguments kind) {
    const bool outer = std::exchange(blankSeparates, false);
    const CodeToken open = openBracket();
    if (!isClosing(cursor.getType())) {
        do {
            pending.push_back(parseArgument(kind));
        } while (skipIf(TokenType::Comma));
    }
    closeBracket(open);
    blankSeparates = outer;
}

const Node* Parser::parseArgument(Arguments kind) {
    const TokenType next = cursor.getNext().type;
    if (isAt(TokenType::Comma) || isClosing(cursor.getType())) {
        failBefore(u"MissingElement", u"a value is missing");
    }
    if (kind != Arguments::Plain && isAt(TokenType::Colon) && (next == TokenType::Comma || isClosing(next))) {
        return takeLeaf(NodeKind::TokenLeaf16);
    }
    if (kind == Arguments::OfCall && isAtName() && next == TokenType::Assign) {
        return parseNamedArgument();
    }
    return parseExpression();
}

const Node* Parser::parseNamedArgument() {
    auto* node = make<NamedArgument<CA>>(cursor.get());
    node->name = own(node, parseName(u"a name"));
    cursor.advance();
    node->value = own(node, parseExpression());
    return node;
}

const Node* Parser::parseParenthesisIndexing(const Node* target) {
    return parseIndexing<ParenthesisIndexing<CA>>(target, Arguments::OfCall);
}

const Node* Parser::parseBraceIndexing(const Node* target) {
    return parseIndexing<BraceIndexing<CA>>(target, Arguments::OfIndex);
}

template <class Indexing>
const Node* Parser::parseIndexing(const Node* target, Arguments kind) {
    Levels levels(*this);
    levels.enter();
    auto* node = make<Indexing>(target);
    node->target = own(node, target);
    const std::size_t mark = pending.size();
    ++indexDepth;
    parseArguments(kind);
    --indexDepth;
    node->arguments = takePending(mark, node);
    return node;
}

/// Reads `(a, ~, b)` into `pending`.
void Parser::parseParameters() {
    const CodeToken open = openBracket();
    if (!isClosing(cursor.getType())) {
        do {
            pending.push_back(parseParameter());
        } while (skipIf(TokenType::Comma));
    }
    closeBracket(open);
}

const Node* Parser::parseParameter() {
    auto* node = make<InputArgument<CA>>(cursor.get());
    if (isAt(TokenType::PrefixOperator34)) {
        node->ignored = own(node, takeLeaf(NodeKind::Ignored));
    } else {
        node->identifier = own(node, parseName(u"a parameter name"));
    }
    return node;
}

const Node* Parser::parseMatrix() {
    return parseLiteral<MatrixLiteral<CA>>(TokenType::CloseSquareBracket);
}

const Node* Parser::parseCell() {
    return parseLiteral<CellLiteral<CA>>(TokenType::CloseBrace);
}

template <class Literal>
const Node* Parser::parseLiteral(TokenType close) {
    Levels levels(*this);
    levels.enter();
    auto* node = make<Literal>(cursor.get());
    const bool outer = std::exchange(blankSeparates, true);
    const std::size_t mark = pending.size();
    const CodeToken open = openBracket();
    parseRows(close);
    closeBracket(open);
    node->rows = takePending(mark, node);
    blankSeparates = outer;
    return node;
}

void Parser::parseRows(TokenType close) {
    cursor.skipLineEnds();
    bool canStartWithSeparator = isAt(TokenType::Semicolon) || isAt(TokenType::Comma);
    while (!isAt(close)) {
        if (!canStartWithSeparator && !startsElement(cursor.getType())) {
            return;
        }
        pending.push_back(parseRow(close));
        while (isAt(lineEnd) || isAt(TokenType::Comma)) {
            cursor.advance();
        }
        while (isAt(lineEnd) || isAt(TokenType::Semicolon)) {
            cursor.advance();
        }
        canStartWithSeparator = isAt(TokenType::Comma);
    }
}

/// The elements up to the end of the row. A separator before the first is an element itself.
const Node* Parser::parseRow(TokenType close) {
    auto* node = make<MatrixRow<CA>>(cursor.get());
    const std::size_t mark = pending.size();
    bool isSeparated = isAt(TokenType::Semicolon) || isAt(TokenType::Comma);
    pending.push_back(isSeparated ? takeLeaf(NodeKind::TokenLeaf2) : parseExpression());
    for (;;) {
        while (skipIf(TokenType::Comma)) {
            isSeparated = true;
        }
        if (isAt(close) || !startsElement(cursor.getType())) {
            break;
        }
        if (!isSeparated && !cursor.get().isAfterGap) {
            failBefore(u"MissingSeparator", u"expected ',' or a space");
        }
        pending.push_back(parseExpression());
        isSeparated = false;
    }
    node->elements = takePending(mark, node);
    return node;
}

/// Reads the names or targets between square brackets before a `=` into `pending`.
void Parser::parseOutputs(Outputs kind) {
    const bool outer = std::exchange(blankSeparates, true);
    const CodeToken open = openBracket();
    cursor.skipLineEnds();
    bool isSeparated = true;
    while (!isAt(TokenType::CloseSquareBracket) && (isAtName() || isAt(TokenType::PrefixOperator34))) {
        if (!isSeparated && !cursor.get().isAfterGap) {
            failBefore(u"MissingSeparator", u"expected ',' or a space");
        }
        pending.push_back(parseOutput(kind));
        isSeparated = false;
        while (isAt(TokenType::Comma) || isAt(lineEnd)) {
            cursor.advance();
            isSeparated = true;
        }
    }
    if (isAt(TokenType::Semicolon) || isAt(TokenType::Comma)) {
        fail(u"MisplacedSeparator", quoteCurrent() + u" can't separate outputs", cursor.get());
    }
    closeBracket(open);
    blankSeparates = outer;
}

const Node* Parser::parseOutput(Outputs kind) {
    if (kind == Outputs::OfFunction) {
        return parseName(u"an output name");
    }
    if (isAt(TokenType::PrefixOperator34)) {
        return takeLeaf(NodeKind::Ignored);
    }
    const CodeToken first = cursor.get();
    const Node* target = parseReference();
    checkTarget(target, first);
    return target;
}

} // namespace ca::syntax
