// Statements with a body. A block whose `end` is missing uses up the next `end`, so what is noticed
// is that its own outermost neighbour stays open. A branch helps to find the place: in
//
//     if a
//         for i = 1:3
//     else
//     end
//
// the `else` belongs to the `if`, so the `for` isn't closed.

#include "syntax/NodeFactory.h"
#include "syntax/Recovery.h"

namespace ca::syntax {

namespace {

using namespace lf::astapi;

/// The keyword of the blocks that have such a branch, `EndOfInput` for what is no branch.
TokenType getBlockOf(TokenType branch) {
    switch (branch) {
    case keyword::Else:
    case keyword::Elseif:
        return keyword::If;
    case keyword::Catch:
        return keyword::Try;
    case keyword::Case:
    case keyword::Otherwise:
        return keyword::Switch;
    default:
        return TokenType::EndOfInput;
    }
}

} // namespace

/// Whether the branch belongs to a block that is open here, in the same function.
bool Parser::isTakenByOpenBlock(TokenType branch) const {
    const TokenType keyword = getBlockOf(branch);
    if (keyword == TokenType::EndOfInput) {
        return false;
    }
    for (std::size_t i = blocks.size(); i > 0 && blocks[i - 1].keyword.type != TokenType::Function; --i) {
        if (blocks[i - 1].keyword.type == keyword) {
            return true;
        }
    }
    return false;
}

void Parser::openBlock() {
    const CodeToken& keyword = cursor.advance();
    blocks.push_back({keyword, keyword.position == lastFault});
}

/// Reads the block's `end`, or reports that there is none.
void Parser::closeBlock() {
    if (!skipIf(TokenType::End)) {
        reportUnclosed();
    }
    blocks.pop_back();
}

void Parser::reportUnclosed() {
    const OpenBlock& block = blocks.back();
    if (block.isReported || cursor.getUnclosedComment()) {
        return;
    }
    const Token keyword = getToken(block.keyword);
    report(u"UnclosedBlock",
           quoteToken(keyword) + u" on line " + toText(keyword.line) + u" is not closed by 'end'",
           cursor.get());
}

NodeList Parser::parseBody(const Node* parent) {
    const std::size_t mark = pending.size();
    parseStatements();
    return takePending(mark, parent);
}

/// Reports and skips what can't follow the last branch of its block: a second `else`, a `case` after
/// `otherwise`.
void Parser::rejectMoreBranches(std::u16string_view last) {
    while (getBlockOf(cursor.getType()) == blocks.back().keyword.type) {
        report(u"MisplacedBranch", quoteCurrent() + u" can't come after " + std::u16string(last),
               cursor.get());
        cursor.advance();
        parseOrSkip([this] {
            if (!isAtSeparator()) {
                parseExpression();
            }
        });
        const std::size_t mark = pending.size();
        parseStatements();
        pending.resize(mark);
    }
}

const Node* Parser::parseIf() {
    Levels levels(*this);
    levels.enterBlock();
    auto* node = make<IfStatement<CA>>(cursor.get());
    openBlock();
    parseOrSkip([&] { node->condition = own(node, parseExpression()); });
    node->body = parseBody(node);
    const std::size_t mark = pending.size();
    while (isAt(keyword::Elseif)) {
        pending.push_back(parseElseif());
    }
    node->elseifBlocks = takePending(mark, node);
    if (isAt(keyword::Else)) {
        node->elseBlock = own(node, parseElse());
        rejectMoreBranches(u"'else'");
    }
    closeBlock();
    return node;
}

const Node* Parser::parseElseif() {
    auto* node = make<ElseifBlock<CA>>(cursor.advance());
    parseOrSkip([&] { node->condition = own(node, parseExpression()); });
    node->body = parseBody(node);
    return node;
}

const Node* Parser::parseElse() {
    auto* node = make<ElseBlock<CA>>(cursor.advance());
    node->body = parseBody(node);
    return node;
}

const Node* Parser::parseWhile() {
    Levels levels(*this);
    levels.enterBlock();
    auto* node = make<WhileStatement<CA>>(cursor.get());
    openBlock();
    parseOrSkip([&] { node->condition = own(node, parseExpression()); });
    node->body = parseBody(node);
    closeBlock();
    return node;
}

const Node* Parser::parseFor() {
    Levels levels(*this);
    levels.enterBlock();
    auto* node = make<ForStatement<CA>>(cursor.get());
    openBlock();
    parseOrSkip([&] {
        if (isAt(TokenType::OpenParenthesis)) {
            parseForInParentheses(node);
        } else {
            parseLoopHeader(node);
        }
    });
    node->body = parseBody(node);
    closeBlock();
    return node;
}

/// `variable = range`.
template <class Loop>
void Parser::parseLoopHeader(Loop* node) {
    const CodeToken first = cursor.get();
    if (!isAtName()) {
        failExpected(u"a loop variable");
    }
    node->variable = own(node, parseReference());
    checkTarget(node->variable, first);
    expectAssign(u"the loop variable");
    node->range = own(node, parseExpression());
}

/// `(variable = range)`: each parenthesis becomes an operation on its side of the `=`.
void Parser::parseForInParentheses(ForStatement<CA>* node) {
    constexpr int openingNumber = 0;
    constexpr int closingNumber = 7;
    const CodeToken open = openBracket();
    parseLoopHeader(node);
    closeBracket(open);
    node->variable = own(node, makeUnary(open, openingNumber, node->variable));
    auto* range = make<UnaryOperation<CA>>(node->range);
    range->operatorNumber = closingNumber;
    range->operand = own(range, node->range);
    node->range = own(node, range);
}

const Node* Parser::parseParfor() {
    Levels levels(*this);
    levels.enterBlock();
    auto* node = make<ParforStatement<CA>>(cursor.get());
    openBlock();
    parseOrSkip([&] {
        if (!isAt(TokenType::OpenParenthesis)) {
            return parseLoopHeader(node);
        }
        const CodeToken open = openBracket();
        parseLoopHeader(node);
        const std::size_t mark = pending.size();
        while (skipIf(TokenType::Comma)) {
            pending.push_back(parseArgument(Arguments::Plain));
        }
        node->options = takePending(mark, node);
        closeBracket(open);
    });
    node->body = parseBody(node);
    closeBlock();
    return node;
}

const Node* Parser::parseSpmd() {
    Levels levels(*this);
    levels.enterBlock();
    auto* node = make<SpmdStatement<CA>>(cursor.get());
    openBlock();
    if (cursor.getTypePastLineEnds() == TokenType::OpenParenthesis) {
        cursor.skipLineEnds();
        parseOrSkip([&] {
            const std::size_t mark = pending.size();
            parseArguments(Arguments::Plain);
            node->arguments = takePending(mark, node);
        });
    }
    node->body = parseBody(node);
    closeBlock();
    return node;
}

const Node* Parser::parseSwitch() {
    Levels levels(*this);
    levels.enterBlock();
    auto* node = make<SwitchStatement<CA>>(cursor.get());
    openBlock();
    parseOrSkip([&] { node->subject = own(node, parseExpression()); });
    rejectStatementsBeforeCase();
    const std::size_t mark = pending.size();
    while (isAt(keyword::Case)) {
        pending.push_back(parseCase());
    }
    node->cases = takePending(mark, node);
    if (isAt(keyword::Otherwise)) {
        node->otherwise = own(node, parseOtherwise());
        rejectMoreBranches(u"'otherwise'");
    }
    closeBlock();
    return node;
}

void Parser::rejectStatementsBeforeCase() {
    skipSeparators();
    if (endsStatements()) {
        return;
    }
    report(u"MisplacedStatement", u"a statement in a 'switch' has to come after a 'case'", cursor.get());
    const std::size_t mark = pending.size();
    parseStatements();
    pending.resize(mark);
}

const Node* Parser::parseCase() {
    auto* node = make<CaseSelection<CA>>(cursor.advance());
    parseOrSkip([&] { node->value = own(node, parseExpression()); });
    node->body = parseBody(node);
    return node;
}

const Node* Parser::parseOtherwise() {
    auto* node = make<OtherwiseBlock<CA>>(cursor.advance());
    node->body = parseBody(node);
    return node;
}

const Node* Parser::parseTry() {
    Levels levels(*this);
    levels.enterBlock();
    auto* node = make<TryStatement<CA>>(cursor.get());
    openBlock();
    node->body = parseBody(node);
    if (isAt(keyword::Catch)) {
        node->catchBlock = own(node, parseCatch());
        rejectMoreBranches(u"'catch'");
    }
    closeBlock();
    return node;
}

const Node* Parser::parseCatch() {
    auto* node = make<CatchBlock<CA>>(cursor.advance());
    if (isAtCaughtError()) {
        node->identifier = own(node, parseName(u"a name"));
    }
    node->body = parseBody(node);
    return node;
}

/// A name after `catch` is the caught error's if nothing else is on its line.
bool Parser::isAtCaughtError() const {
    if (!isAtName()) {
        return false;
    }
    const TokenType next = cursor.getNext().type;
    return next == lineEnd || next == TokenType::Comma || next == TokenType::Semicolon ||
           next == TokenType::EndOfInput;
}

} // namespace ca::syntax
