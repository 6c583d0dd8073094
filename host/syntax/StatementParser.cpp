// Statements without a body, and what tells all statements apart: the first token, and for an assignment the
// `=`:
//
//     [a, b] = f(x)       several outputs: a `=` follows the bracket that closes the first one
//     x(1).y = 2          read as an expression first, which then turns out to be the target
//     hold on             a command: the tokenizer made a word of what follows the name

#include "syntax/NodeFactory.h"
#include "syntax/Recovery.h"

namespace ca::syntax {

namespace {

using namespace lf::astapi;

bool isAssignable(NodeKind kind) {
    switch (kind) {
    case NodeKind::Identifier:
    case NodeKind::ParenthesisIndexing:
    case NodeKind::BraceIndexing:
    case NodeKind::FieldAccess:
    case NodeKind::DynamicFieldAccess:
        return true;
    default:
        return false;
    }
}

} // namespace

/// Reads statements into `pending`, up to a token that ends the block around them.
void Parser::parseStatements() {
    for (skipSeparators(); !endsStatements(); skipSeparators()) {
        const std::size_t place = cursor.getPlace();
        const bool isWhole = parseOrSkip([this] { parseStatement(); });
        if (!isWhole && cursor.getPlace() == place) {
            cursor.advance();
        }
    }
}

bool Parser::endsStatements() {
    const TokenType type = cursor.getType();
    if (type == TokenType::EndOfInput) {
        return true;
    }
    if (type == TokenType::End) {
        return !blocks.empty();
    }
    if (type == TokenType::Function) {
        return !functionsHaveEnd && !blocks.empty();
    }
    return isTakenByOpenBlock(type);
}

/// Statements with a body need no separator after them.
void Parser::parseStatement() {
    const Node* statement = parseBlockStatement();
    pending.push_back(statement != nullptr ? statement : parseSimpleStatement());
}

const Node* Parser::parseBlockStatement() {
    switch (cursor.getType()) {
    case TokenType::Function:
        return parseFunctionStatement();
    case keyword::For:
        return parseFor();
    case keyword::If:
        return parseIf();
    case keyword::Parfor:
        return parseParfor();
    case keyword::Switch:
        return parseSwitch();
    case keyword::While:
        return parseWhile();
    case keyword::Try:
        return parseTry();
    case keyword::Spmd:
        return parseSpmd();
    case keyword::Classdef:
        return parseMisplaced(&Parser::parseClass, u"'classdef' has to be the first code of its file");
    case keyword::Arguments:
        return parseMisplaced(&Parser::parseArgumentsBlock,
                              u"an 'arguments' block has to come before the first statement of its function");
    default:
        return nullptr;
    }
}

/// Reports a block in the wrong place, and reads it all the same, so that its `end` is known.
const Node* Parser::parseMisplaced(const Node* (Parser::*parse)(), std::u16string_view message) {
    report(u"MisplacedBlock", std::u16string(message), cursor.get());
    return (this->*parse)();
}

const Node* Parser::parseSimpleStatement() {
    switch (cursor.getType()) {
    case TokenType::Break:
        return parseLeafStatement(NodeKind::TokenLeaf10);
    case TokenType::Continue:
        return parseLeafStatement(NodeKind::TokenLeaf19);
    case TokenType::Return:
        return parseLeafStatement(NodeKind::TokenLeaf58);
    case TokenType::Unmeasured33:
        return parseLeafStatement(NodeKind::TokenLeaf33);
    case TokenType::Global:
        return parseDeclaration<GlobalDeclaration<CA>>();
    case TokenType::Persistent:
        return parseDeclaration<PersistentDeclaration<CA>>();
    case TokenType::Import:
        return parseImport();
    case TokenType::OpenSquareBracket:
        return isMultipleAssignment() ? parseMultipleAssignment() : parseExpressionStatement();
    case TokenType::NameToken27:
    case TokenType::NameToken28:
        return cursor.getNext().type == TokenType::CommandWord ? parseCommand() : parseExpressionStatement();
    default:
        rejectStray();
        return parseExpressionStatement();
    }
}

/// Reports a token that can only close or continue what isn't open.
void Parser::rejectStray() {
    const CodeToken& code = cursor.get();
    switch (code.type) {
    case TokenType::End:
    case TokenType::EndIndex:
        cursor.advance();
        fail(u"UnmatchedEnd", u"this 'end' closes nothing: no block is open here", code);
    case keyword::Else:
    case keyword::Elseif:
        return rejectBranch(u"an 'if'");
    case keyword::Catch:
        return rejectBranch(u"a 'try'");
    case keyword::Case:
    case keyword::Otherwise:
        return rejectBranch(u"a 'switch'");
    default:
        return rejectClosingBracket();
    }
}

void Parser::rejectBranch(std::u16string_view block) {
    const std::u16string branch = quoteCurrent();
    const CodeToken& code = cursor.advance();
    fail(u"MisplacedBranch", branch + u" is not inside " + std::u16string(block), code);
}

void Parser::rejectClosingBracket() {
    std::u16string_view open;
    switch (cursor.getType()) {
    case TokenType::CloseParenthesis:
        open = u"'('";
        break;
    case TokenType::CloseSquareBracket:
        open = u"'['";
        break;
    case TokenType::CloseBrace:
        open = u"'{'";
        break;
    default:
        return;
    }
    fail(u"UnmatchedBracket",
         quoteCurrent() + u" closes nothing: no " + std::u16string(open) + u" is open here", cursor.get());
}

const Node* Parser::parseLeafStatement(NodeKind kind) {
    const Node* leaf = takeLeaf(kind);
    expectStatementEnd();
    return leaf;
}

template <class Declaration>
const Node* Parser::parseDeclaration() {
    auto* node = make<Declaration>(cursor.get());
    cursor.advance();
    const std::size_t mark = pending.size();
    do {
        pending.push_back(parseName(u"a name to declare"));
    } while (isAtName());
    node->names = takePending(mark, node);
    expectStatementEnd();
    return node;
}

const Node* Parser::parseImport() {
    auto* node = make<ImportStatement<CA>>(cursor.get());
    cursor.advance();
    node->words = parseWords(node);
    return finishStatement(node);
}

const Node* Parser::parseCommand() {
    auto* node = make<CommandSyntax<CA>>(cursor.get());
    node->command = own(node, parseName(u"a command"));
    node->words = parseWords(node);
    return finishStatement(node);
}

NodeList Parser::parseWords(const Node* parent) {
    const std::size_t mark = pending.size();
    while (isAt(TokenType::CommandWord)) {
        auto* word = make<Identifier<CA>>(cursor.get());
        word->text = text.substr(word->position, cursor.get().length);
        pending.push_back(word);
        cursor.advance();
    }
    return takePending(mark, parent);
}

/// An expression, or an assignment to it.
const Node* Parser::parseExpressionStatement() {
    const CodeToken first = cursor.get();
    const Node* expression = parseExpression();
    if (!isAt(TokenType::Assign)) {
        auto* node = make<ExpressionStatement<CA>>(expression);
        node->expression = own(node, expression);
        return finishStatement(node);
    }
    checkTarget(expression, first);
    cursor.advance();
    auto* node = make<Assignment<CA>>(expression);
    node->target = own(node, expression);
    node->value = own(node, parseExpression());
    return finishStatement(node);
}

void Parser::checkTarget(const Node* target, const CodeToken& at) {
    if (!isAssignable(target->kind)) {
        fail(u"InvalidTarget",
             u"the expression that starts with " + quoteToken(getToken(at)) + u" can't be assigned to", at);
    }
}

/// Whether the bracket that closes the current one is followed by `=`.
bool Parser::isMultipleAssignment() const {
    const std::vector<CodeToken>& codes = cursor.getCodes();
    std::size_t open = 0;
    for (std::size_t i = cursor.getPlace();; ++i) {
        const TokenType type = codes[i].type;
        if (type == TokenType::EndOfInput || type == TokenType::End || opensBlock(type)) {
            return false;
        }
        if (type == TokenType::OpenSquareBracket) {
            ++open;
        } else if (type == TokenType::CloseSquareBracket && --open == 0) {
            return codes[i + 1].type == TokenType::Assign;
        }
    }
}

const Node* Parser::parseMultipleAssignment() {
    auto* node = make<MultipleAssignment<CA>>(cursor.get());
    const std::size_t mark = pending.size();
    parseOutputs(Outputs::OfAssignment);
    node->outputs = takePending(mark, node);
    expectAssign(u"the outputs");
    node->value = own(node, parseExpression());
    return finishStatement(node);
}

/// Reads the statement's semicolon. Without one its value is printed.
const Node* Parser::finishStatement(const Node* statement) {
    if (skipIf(TokenType::Semicolon)) {
        return statement;
    }
    expectStatementEnd();
    auto* node = make<PrintingStatement<CA>>(statement);
    node->statement = own(node, statement);
    return node;
}

/// A statement ends at a separator, or before the keyword that ends its block.
void Parser::expectStatementEnd() {
    if (isAtSeparator() || isAt(TokenType::EndOfInput) || isAt(TokenType::End) ||
        dividesBlock(cursor.getType())) {
        return;
    }
    rejectClosingBracket();
    if (isAt(TokenType::EndIndex)) {
        rejectStray();
    }
    failExpected(u"the end of the statement");
}

} // namespace ca::syntax
